#pragma once

// The service client over WinHTTP. Its functions keep no state and run on any thread, but block.
//
// A phase (resolve, connect, send, receive) takes at most the time-out that it is given. WinHTTP does not
// keep to that in all cases: its time-outs begin anew with every byte, so a server that greets or answers
// byte by byte could hold a call for ever. So the caller waits for three phases until the request is out and
// for one from each sign of life to the next, each time a second more, and then goes on alone; see
// abandonable_call.h for what becomes of the call.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

#include "model/service_client.h"
#include "model/win_http_calls_win.h"

namespace varnelo {

// Host name of the service, set before the program starts. Tests may set it while no call is under way.
extern std::wstring serviceHost;

// A longer reply is cut off here, so that no server can use up the memory.
inline constexpr std::size_t kPostReplyLimitBytes = std::size_t{64} << 20;
// A longer file is a failed download, so that no server can use up the disk.
inline constexpr std::uint64_t kDownloadLimitBytes = std::uint64_t{1} << 30;

inline constexpr std::uint32_t kDownloadTimeoutMs = 120'000;
// All of a download, however slowly it goes on.
inline constexpr std::uint32_t kDownloadTotalMs = 3'600'000;

// The reply's body, whatever its status; empty on any failure, or what came until then. All of the call takes
// at most four times `timeoutMs`, and a second. `timeoutMs` is at least 1. Once `stopped` is true the call
// fails; null for never.
std::string httpPost(const std::wstring& host, const std::wstring& path, const std::string& body,
                     std::uint32_t timeoutMs, const WinHttpCalls& calls = {},
                     const std::atomic<bool>* stopped = nullptr);

// Gets a file from the service host. Anything but status 200 leaves what is at `destination` alone; after a
// later failure nothing is there.
bool httpDownload(const std::wstring& path, const std::wstring& destination, const WinHttpCalls& calls = {},
                  const std::atomic<bool>* stopped = nullptr);

class WinHttpServiceClient final : public ServiceClient {
public:
    explicit WinHttpServiceClient(const WinHttpCalls& winHttp = {}) : calls(winHttp) {}

    std::string post(const std::wstring& path, const std::string& body,
                     std::uint32_t timeoutMs) const override;
    bool download(const std::wstring& path, const std::wstring& destination) const override;
    void stop() override { stopped = true; }

private:
    const WinHttpCalls calls;
    std::atomic<bool> stopped = false;
};

}  // namespace varnelo
