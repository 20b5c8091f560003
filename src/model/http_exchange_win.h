#pragma once

// One HTTPS request and its reply, over WinHTTP, on the calling thread.

#include <cstdint>
#include <string>

#include "model/reply_relay.h"
#include "model/win_http_calls_win.h"

namespace varnelo {

struct HttpRequest {
    // Complete: a reply shorter than its Content-Length is a failure, and its status is reported before its
    // body. Loose: the body is what comes, and nobody looks at the status.
    enum class Reading { Loose, Complete };

    std::wstring userAgent;
    std::wstring host;  // a name without a port; the port is always 443
    std::wstring verb;
    std::wstring path;
    std::wstring headers = {};  // each with its line end; none when empty
    std::string body = {};
    std::uint32_t timeoutMs = 0;  // of each phase: resolve, connect, send, receive; not 0
    Reading reading = Reading::Loose;
};

// Passes on what comes, all but the last step; true when that was everything. Holds three handles while it
// runs and nothing afterwards. On a silent server it may take much longer than the time-outs say, or never
// return.
bool exchange(const WinHttpCalls& calls, const HttpRequest& request, ReplyRelay& relay);

}  // namespace varnelo
