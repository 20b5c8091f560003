#include "support/recorded_win_http_win.h"

#include <cstdio>
#include <mutex>

#include "platform/utf.h"

namespace varnelo::test {
namespace {

const WinHttpCalls kReal;

struct Record {
    std::mutex mutex;
    WinHttpChanges changes;
    std::vector<std::string> lines;
    std::map<HINTERNET, std::string> names;
};

Record& record() {
    static Record only;
    return only;
}

std::string text(const wchar_t* value) { return value ? '"' + utf8FromWide(value) + '"' : "none"; }

std::string hex(DWORD value) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "0x%lX", value);
    return digits;
}

std::string nameOf(HINTERNET handle) { return record().names[handle]; }

// Writes the call down; false when it is to fail.
bool note(const std::string& call, const std::string& arguments) {
    const std::string line = arguments.empty() ? call : call + ' ' + arguments;
    auto& lines = record().lines;
    const bool reading = call == "queryDataAvailable" || call == "readData";
    if (!reading || lines.size() < 2 || (lines.back() != line && lines[lines.size() - 2] != line))
        lines.push_back(line);
    if (record().changes.failing != call) return true;
    SetLastError(ERROR_WINHTTP_INTERNAL_ERROR);
    return false;
}

HINTERNET named(HINTERNET handle, const char* name) {
    const std::scoped_lock lock(record().mutex);
    if (handle) record().names[handle] = name;
    return handle;
}

HINTERNET WINAPI open(LPCWSTR agent, DWORD access, LPCWSTR proxy, LPCWSTR bypass, DWORD flags) {
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("open", text(agent) + ' ' + std::to_string(access) + ' ' + text(proxy) + ' ' +
                              text(bypass) + ' ' + hex(flags)))
            return nullptr;
    }
    return named(kReal.open(agent, access, proxy, bypass, flags), "session");
}

BOOL WINAPI setTimeouts(HINTERNET handle, int resolve, int connect, int send, int receive) {
    int instead = 0;
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("setTimeouts", nameOf(handle) + ' ' + std::to_string(resolve) + ' ' +
                                     std::to_string(connect) + ' ' + std::to_string(send) + ' ' +
                                     std::to_string(receive)))
            return FALSE;
        instead = record().changes.timeoutMs;
    }
    if (instead != 0) resolve = connect = send = receive = instead;
    return kReal.setTimeouts(handle, resolve, connect, send, receive);
}

HINTERNET WINAPI connect(HINTERNET session, LPCWSTR host, INTERNET_PORT port, DWORD reserved) {
    INTERNET_PORT instead = port;
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("connect", nameOf(session) + ' ' + text(host) + ' ' + std::to_string(port))) return nullptr;
        if (record().changes.port != 0) instead = record().changes.port;
    }
    return named(kReal.connect(session, host, instead, reserved), "connection");
}

HINTERNET WINAPI openRequest(HINTERNET connection, LPCWSTR verb, LPCWSTR path, LPCWSTR version,
                             LPCWSTR referrer, LPCWSTR* types, DWORD flags) {
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("openRequest", nameOf(connection) + ' ' + text(verb) + ' ' + text(path) + ' ' +
                                     text(version) + ' ' + text(referrer) + (types ? " types " : " none ") +
                                     hex(flags)))
            return nullptr;
    }
    return named(kReal.openRequest(connection, verb, path, version, referrer, types, flags), "request");
}

BOOL WINAPI setOption(HINTERNET handle, DWORD option, LPVOID value, DWORD size) {
    DWORD number = *static_cast<const DWORD*>(value);
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("setOption", nameOf(handle) + ' ' + std::to_string(option) + ' ' + std::to_string(number) +
                                   ' ' + std::to_string(size)))
            return FALSE;
        if (number == record().changes.refusedOption && number != 0) return FALSE;
        const auto instead = record().changes.options.find(option);
        if (instead != record().changes.options.end()) number = instead->second;
    }
    return kReal.setOption(handle, option, &number, size);
}

BOOL WINAPI addRequestHeaders(HINTERNET request, LPCWSTR headers, DWORD length, DWORD flags) {
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("addRequestHeaders", nameOf(request) + ' ' + text(headers) + ' ' + hex(flags)))
            return FALSE;
    }
    return kReal.addRequestHeaders(request, headers, length, flags);
}

BOOL WINAPI sendRequest(HINTERNET request, LPCWSTR headers, DWORD headersLength, LPVOID body,
                        DWORD bodyLength, DWORD totalLength, DWORD_PTR context) {
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("sendRequest", nameOf(request) + ' ' + text(headers) + ' ' + std::to_string(bodyLength) +
                                     ' ' + std::to_string(totalLength)))
            return FALSE;
    }
    return kReal.sendRequest(request, headers, headersLength, body, bodyLength, totalLength, context);
}

BOOL WINAPI receiveResponse(HINTERNET request, LPVOID reserved) {
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("receiveResponse", nameOf(request))) return FALSE;
    }
    return kReal.receiveResponse(request, reserved);
}

BOOL WINAPI queryHeaders(HINTERNET request, DWORD what, LPCWSTR name, LPVOID buffer, LPDWORD length,
                         LPDWORD index) {
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("queryHeaders", nameOf(request) + ' ' + hex(what))) return FALSE;
    }
    return kReal.queryHeaders(request, what, name, buffer, length, index);
}

BOOL WINAPI queryDataAvailable(HINTERNET request, LPDWORD available) {
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("queryDataAvailable", nameOf(request))) return FALSE;
    }
    return kReal.queryDataAvailable(request, available);
}

BOOL WINAPI readData(HINTERNET request, LPVOID buffer, DWORD size, LPDWORD read) {
    {
        const std::scoped_lock lock(record().mutex);
        if (!note("readData", nameOf(request))) return FALSE;
    }
    return kReal.readData(request, buffer, size, read);
}

BOOL WINAPI closeHandle(HINTERNET handle) {
    {
        const std::scoped_lock lock(record().mutex);
        note("closeHandle", nameOf(handle));
        record().names.erase(handle);
    }
    return kReal.closeHandle(handle);
}

}  // namespace

WinHttpCalls recordedWinHttp(const WinHttpChanges& changes) {
    const std::scoped_lock lock(record().mutex);
    record().changes = changes;
    record().lines.clear();
    return {&open,         &setTimeouts,        &connect,     &openRequest,
            &setOption,    &addRequestHeaders,  &sendRequest, &receiveResponse,
            &queryHeaders, &queryDataAvailable, &readData,    &closeHandle};
}

std::vector<std::string> recordedCalls() {
    const std::scoped_lock lock(record().mutex);
    return record().lines;
}

}  // namespace varnelo::test
