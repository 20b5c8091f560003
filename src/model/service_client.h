#pragma once

// What the program asks of its service host: one call that sends and one that fetches a file. The real one is
// in service_client_win.h; tests script theirs. One object serves all threads.
//
// Both calls block, for as long as service_client_win.h says, or until stop(). There is no session, no cookie
// and no second try.

#include <cstdint>
#include <string>

namespace varnelo {

class ServiceClient {
public:
    virtual ~ServiceClient() = default;

    // The body of the reply, whatever its HTTP status. Empty on any failure, or what came until then.
    virtual std::string post(const std::wstring& path, const std::string& body,
                             std::uint32_t timeoutMs) const = 0;

    // Fetches a file and writes it to `destination`. After a failure there is no part of it, and what lay at
    // `destination` is still there unless the server had begun to send the file.
    virtual bool download(const std::wstring& path, const std::wstring& destination) const = 0;

    // For the end of the program, from any thread: calls that are under way fail within a moment, and those
    // to come at once.
    virtual void stop() = 0;
};

}  // namespace varnelo
