#include "model/http_exchange_win.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cwchar>
#include <optional>

namespace varnelo {
namespace {

// The system says how much it has; what it has is taken in pieces of this size at most.
constexpr DWORD kPieceLimitBytes = 1 << 20;

constexpr DWORD kSecureProtocols = WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2 | WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_3;

class InternetHandle {
public:
    InternetHandle(const WinHttpCalls& winHttp, HINTERNET opened) : calls(winHttp), handle(opened) {}
    InternetHandle(const InternetHandle&) = delete;
    InternetHandle& operator=(const InternetHandle&) = delete;
    ~InternetHandle() {
        if (handle) calls.closeHandle(handle);
    }

    HINTERNET get() const { return handle; }
    explicit operator bool() const { return handle != nullptr; }

private:
    const WinHttpCalls& calls;
    HINTERNET handle;
};

bool setOption(const WinHttpCalls& calls, HINTERNET request, DWORD option, DWORD value) {
    return calls.setOption(request, option, &value, sizeof value) != FALSE;
}

// An option of the session: a request does not take it, and asks the session when it connects. A Windows 10
// that does not know TLS 1.3 refuses the value that names it, and is left with TLS 1.2; never with what it
// would allow by itself.
bool allowSecureProtocols(const WinHttpCalls& calls, HINTERNET session) {
    return setOption(calls, session, WINHTTP_OPTION_SECURE_PROTOCOLS, kSecureProtocols) ||
           setOption(calls, session, WINHTTP_OPTION_SECURE_PROTOCOLS, WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2);
}

bool prepare(const WinHttpCalls& calls, HINTERNET handle, const HttpRequest& request) {
    // The time-out of the receive phase is one of each read; this one ends the wait for the reply's
    // beginning, which without it has a limit of its own.
    if (!setOption(calls, handle, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, request.timeoutMs)) return false;
    return request.headers.empty() ||
           calls.addRequestHeaders(handle, request.headers.c_str(), static_cast<DWORD>(-1),
                                   WINHTTP_ADDREQ_FLAG_ADD) != FALSE;
}

bool send(const WinHttpCalls& calls, HINTERNET handle, const std::string& body) {
    if (body.size() > ULONG_MAX) return false;
    const auto size = static_cast<DWORD>(body.size());
    void* const data = body.empty() ? WINHTTP_NO_REQUEST_DATA : const_cast<char*>(body.data());
    return calls.sendRequest(handle, WINHTTP_NO_ADDITIONAL_HEADERS, 0, data, size, size, 0) != FALSE;
}

std::optional<std::uint32_t> statusOf(const WinHttpCalls& calls, HINTERNET handle) {
    DWORD status = 0, size = sizeof status;
    if (!calls.queryHeaders(handle, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                            WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX))
        return std::nullopt;
    return status;
}

// Read as text: as a number it ends at 4 GB.
std::optional<std::uint64_t> contentLengthOf(const WinHttpCalls& calls, HINTERNET handle) {
    std::array<wchar_t, 32> text{};
    DWORD size = sizeof text - sizeof(wchar_t);
    if (!calls.queryHeaders(handle, WINHTTP_QUERY_CONTENT_LENGTH, WINHTTP_HEADER_NAME_BY_INDEX, text.data(),
                            &size, WINHTTP_NO_HEADER_INDEX))
        return std::nullopt;
    wchar_t* end = nullptr;
    const std::uint64_t length = std::wcstoull(text.data(), &end, 10);
    if (end == text.data()) return std::nullopt;
    return length;
}

// Nothing when a call failed or nobody wants more; otherwise how many bytes came before the end.
std::optional<std::uint64_t> passBody(const WinHttpCalls& calls, HINTERNET handle, ReplyRelay& relay) {
    for (std::uint64_t passed = 0;;) {
        DWORD available = 0, read = 0;
        if (!calls.queryDataAvailable(handle, &available)) return std::nullopt;
        if (available == 0) return passed;
        std::string piece(std::min(available, kPieceLimitBytes), '\0');
        if (!calls.readData(handle, piece.data(), static_cast<DWORD>(piece.size()), &read))
            return std::nullopt;
        if (read == 0) return std::nullopt;  // what was there did not come
        piece.resize(std::min<std::size_t>(read, piece.size()));
        passed += piece.size();
        if (!relay.pass({ReplyStep::Kind::Bytes, 0, std::move(piece)})) return std::nullopt;
    }
}

}  // namespace

bool exchange(const WinHttpCalls& calls, const HttpRequest& request, ReplyRelay& relay) {
    // Declared in this order, they are closed in the opposite one.
    const InternetHandle session(calls,
                                 calls.open(request.userAgent.c_str(), WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY,
                                            WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0));
    if (!session) return false;
    const int timeout = static_cast<int>(std::min<std::uint32_t>(request.timeoutMs, INT_MAX));
    if (!calls.setTimeouts(session.get(), timeout, timeout, timeout, timeout)) return false;
    if (!allowSecureProtocols(calls, session.get())) return false;
    const InternetHandle connection(
        calls, calls.connect(session.get(), request.host.c_str(), INTERNET_DEFAULT_HTTPS_PORT, 0));
    if (!connection) return false;
    const InternetHandle handle(
        calls, calls.openRequest(connection.get(), request.verb.c_str(), request.path.c_str(), nullptr,
                                 WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES, WINHTTP_FLAG_SECURE));
    if (!handle || !prepare(calls, handle.get(), request) || !send(calls, handle.get(), request.body))
        return false;
    if (!relay.pass({ReplyStep::Kind::Sent})) return false;
    if (!calls.receiveResponse(handle.get(), nullptr)) return false;
    if (request.reading == HttpRequest::Reading::Loose)
        return passBody(calls, handle.get(), relay).has_value();

    const std::optional<std::uint32_t> status = statusOf(calls, handle.get());
    if (!status) return false;
    const std::optional<std::uint64_t> expected = contentLengthOf(calls, handle.get());
    if (!relay.pass({ReplyStep::Kind::Status, *status})) return false;
    const std::optional<std::uint64_t> received = passBody(calls, handle.get(), relay);
    return received && (!expected || *received == *expected);
}

}  // namespace varnelo
