#include "model/service_client_win.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "model/abandonable_call.h"
#include "model/http_exchange_win.h"
#include "platform/handles_win.h"

namespace varnelo {

std::wstring serviceHost = L"service.varnelo.example";

namespace {

// WinHTTP's own time-outs come first where they work: they end a call tidily.
constexpr std::chrono::milliseconds kGrace{1000};

CallLimits limitsFor(std::uint32_t timeoutMs, std::chrono::milliseconds total,
                     const std::atomic<bool>* stopped) {
    const std::chrono::milliseconds phase(timeoutMs);
    return {3 * phase + kGrace, phase + kGrace, total + kGrace, stopped};
}

bool runExchange(HttpRequest request, const WinHttpCalls& calls, const CallLimits& limits,
                 const std::function<bool(const ReplyStep&)>& take) {
    return runAbandonable(
        [request = std::move(request), calls](ReplyRelay& relay) { return exchange(calls, request, relay); },
        limits, take);
}

// The file that a download fills. One that is not kept is gone at the end.
class DownloadedFile {
public:
    explicit DownloadedFile(std::wstring filePath) : path(std::move(filePath)) {}
    DownloadedFile(const DownloadedFile&) = delete;
    DownloadedFile& operator=(const DownloadedFile&) = delete;
    ~DownloadedFile() {
        if (!file) return;
        file.reset();
        if (!kept) DeleteFileW(path.c_str());
    }

    bool create() {
        file.reset(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                               nullptr));
        return static_cast<bool>(file);
    }
    bool append(const std::string& bytes) {
        sizeBytes += bytes.size();
        DWORD written = 0;
        return sizeBytes <= kDownloadLimitBytes &&
               WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
               written == bytes.size();
    }
    void keep() { kept = true; }

private:
    const std::wstring path;
    FileHandle file;
    std::uint64_t sizeBytes = 0;
    bool kept = false;
};

}  // namespace

std::string httpPost(const std::wstring& host, const std::wstring& path, const std::string& body,
                     std::uint32_t timeoutMs, const WinHttpCalls& calls, const std::atomic<bool>* stopped) {
    HttpRequest request;
    request.userAgent = L"Morlinex/1.0";
    request.host = host;
    request.verb = L"POST";
    request.path = path;
    // The service takes JSON under this header all the same.
    request.headers = L"Content-Type: application/x-www-form-urlencoded\r\n";
    request.body = body;
    request.timeoutMs = timeoutMs;

    std::string reply;
    const auto append = [&reply](const ReplyStep& step) {
        reply.append(step.bytes, 0, kPostReplyLimitBytes - reply.size());
        return reply.size() < kPostReplyLimitBytes;
    };
    const CallLimits limits = limitsFor(timeoutMs, 4 * std::chrono::milliseconds(timeoutMs), stopped);
    runExchange(std::move(request), calls, limits, append);
    return reply;
}

bool httpDownload(const std::wstring& path, const std::wstring& destination, const WinHttpCalls& calls,
                  const std::atomic<bool>* stopped) {
    HttpRequest request;
    request.userAgent = L"Varnelo/1.0";
    request.host = serviceHost;
    request.verb = L"GET";
    request.path = path;
    request.timeoutMs = kDownloadTimeoutMs;
    request.reading = HttpRequest::Reading::Complete;

    DownloadedFile file(destination);
    const auto write = [&file](const ReplyStep& step) {
        if (step.kind == ReplyStep::Kind::Status) return step.status == HTTP_STATUS_OK && file.create();
        return step.kind != ReplyStep::Kind::Bytes || file.append(step.bytes);
    };
    const CallLimits limits =
        limitsFor(kDownloadTimeoutMs, std::chrono::milliseconds(kDownloadTotalMs), stopped);
    if (!runExchange(std::move(request), calls, limits, write)) return false;
    file.keep();
    return true;
}

std::string WinHttpServiceClient::post(const std::wstring& path, const std::string& body,
                                       std::uint32_t timeoutMs) const {
    return httpPost(serviceHost, path, body, timeoutMs, calls, &stopped);
}

bool WinHttpServiceClient::download(const std::wstring& path, const std::wstring& destination) const {
    return httpDownload(path, destination, calls, &stopped);
}

}  // namespace varnelo
