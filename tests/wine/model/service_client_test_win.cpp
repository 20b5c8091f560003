#include "model/service_client_win.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "model/abandonable_call.h"
#include "model/json_text.h"
#include "platform/file_bytes.h"
#include "platform/handles_win.h"
#include "platform/utf.h"
#include "support/real_desktop_win.h"
#include "support/recorded_win_http_win.h"

namespace varnelo {
namespace {

using test::recordedCalls;
using test::recordedWinHttp;
using test::WinHttpChanges;
using Lines = std::vector<std::string>;

constexpr std::uint32_t kPatientMs = 60'000;
constexpr std::uint32_t kShortMs = 500;
constexpr double kSlackSeconds = 8;

// A port of the server that stands beside the tests: see tests/support/https_server.py for what each one
// does.
std::uint16_t portOf(const std::string& name) {
    const char* variable = std::getenv("VARNELO_HTTPS_PORTS");
    const std::string ports = variable ? "," + std::string(variable) + "," : "";
    const std::size_t found = ports.find("," + name + ":");
    return found == ports.npos
               ? 0
               : static_cast<std::uint16_t>(std::atoi(ports.c_str() + found + name.size() + 2));
}

// The server's large file.
std::string largeContent(std::size_t size = 10'000'000) {
    std::string content(size, '\0');
    for (std::size_t i = 0; i < size; ++i) content[i] = static_cast<char>(i % 251);
    return content;
}

// A request as the server got it: its first line, its headers in the order of the alphabet, its body.
Lines requestIn(const std::string& raw) {
    Lines lines;
    std::size_t start = 0;
    for (std::size_t end; (end = raw.find("\r\n", start)) != raw.npos && end != start; start = end + 2)
        lines.push_back(raw.substr(start, end - start));
    if (lines.empty()) return {raw};
    std::sort(lines.begin() + 1, lines.end());
    lines.push_back(raw.substr(std::min(start + 2, raw.size())));
    return lines;
}

HINTERNET WINAPI connectToTheServer(HINTERNET session, LPCWSTR host, INTERNET_PORT, DWORD reserved) {
    return WinHttpConnect(session, host, portOf("good"), reserved);
}

class ServiceClientTest : public testing::Test {
protected:
    ServiceClientTest() {
        serviceHost = L"localhost";
        talkTo("good");
    }
    // No call is under way when the next test begins its record.
    ~ServiceClientTest() override {
        EXPECT_TRUE(becomesTrue([] { return abandonedCalls() == 0; }));
        serviceHost = hostBefore;
    }

    void talkTo(const std::string& port, WinHttpChanges with = {}) {
        changes = std::move(with);
        changes.port = portOf(port);
        ASSERT_NE(changes.port, 0) << "no server: VARNELO_HTTPS_PORTS does not name " << port;
    }

    std::string post(const std::wstring& path, const std::string& body = "",
                     std::uint32_t timeoutMs = kPatientMs) {
        const auto start = std::chrono::steady_clock::now();
        std::string reply = httpPost(L"localhost", path, body, timeoutMs, recordedWinHttp(changes));
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return reply;
    }
    // The server gives up the connections that it keeps.
    void letGo() {
        WinHttpCalls direct;
        direct.connect = connectToTheServer;
        EXPECT_EQ(httpPost(L"localhost", L"/release", "", kPatientMs, direct), "released");
    }
    bool download(const std::wstring& path) {
        return httpDownload(path, destination, recordedWinHttp(changes));
    }
    // All that a call with short time-outs may take, and what a busy machine may add.
    static double limitSeconds() { return 4 * kShortMs / 1000.0 + 1 + kSlackSeconds; }
    std::string downloaded() const {
        const auto bytes = readWholeFile(destination);
        return bytes ? std::string(bytes->begin(), bytes->end()) : "(no file)";
    }

    const std::wstring hostBefore = serviceHost;
    WinHttpChanges changes;
    WindowsFileProbe probe;
    TemporaryFolder folder{L"service"};
    const std::wstring destination = folder.path() + L"\\setup.exe";
    double seconds = 0;  // that the last post took
};

TEST_F(ServiceClientTest, TheServiceHasOneHost) { EXPECT_EQ(hostBefore, L"service.varnelo.example"); }

TEST_F(ServiceClientTest, APostMakesTheseCallsInThisOrder) {
    EXPECT_EQ(post(L"/text", "12345", 60'001), "hello");
    EXPECT_EQ(
        recordedCalls(),
        (Lines{"open \"Morlinex/1.0\" 4 none none 0x0", "setTimeouts session 60001 60001 60001 60001",
               "setOption session 84 10240 4", "connect session \"localhost\" 443",
               "openRequest connection \"POST\" \"/text\" none none none 0x800000",
               "setOption request 7 60001 4",
               "addRequestHeaders request \"Content-Type: application/x-www-form-urlencoded\r\n\" 0x20000000",
               "sendRequest request none 5 5", "receiveResponse request", "queryDataAvailable request",
               "readData request", "closeHandle request", "closeHandle connection", "closeHandle session"}));
}

TEST_F(ServiceClientTest, ADownloadMakesTheseCallsInThisOrder) {
    EXPECT_TRUE(download(L"/text"));
    EXPECT_EQ(
        recordedCalls(),
        (Lines{"open \"Varnelo/1.0\" 4 none none 0x0", "setTimeouts session 120000 120000 120000 120000",
               "setOption session 84 10240 4", "connect session \"localhost\" 443",
               "openRequest connection \"GET\" \"/text\" none none none 0x800000",
               "setOption request 7 120000 4", "sendRequest request none 0 0", "receiveResponse request",
               "queryHeaders request 0x20000013", "queryHeaders request 0x5", "queryDataAvailable request",
               "readData request", "closeHandle request", "closeHandle connection", "closeHandle session"}));
}

TEST_F(ServiceClientTest, APostArrivesAsItWasSent) {
    using namespace std::string_literals;
    const std::string body = "{\n  \"a\": \"\xC3\xBC\"\n}\n\0end"s;
    EXPECT_EQ(requestIn(post(L"/echo", body)),
              (Lines{"POST /echo HTTP/1.1", "Connection: Keep-Alive",
                     "Content-Length: " + std::to_string(body.size()),
                     "Content-Type: application/x-www-form-urlencoded",
                     "Host: localhost:" + std::to_string(changes.port), "User-Agent: Morlinex/1.0", body}));
}

TEST_F(ServiceClientTest, ALongBodyArrivesWhole) {
    const std::string body = largeContent(300'000);
    const std::string reply = post(L"/echo", body);
    ASSERT_GT(reply.size(), body.size());
    EXPECT_TRUE(reply.ends_with("\r\n\r\n" + body));
}

TEST_F(ServiceClientTest, AnEmptyPostIsSentAllTheSame) {
    const std::string reply = post(L"/echo");
    EXPECT_TRUE(reply.starts_with("POST /echo HTTP/1.1\r\n"));
    EXPECT_NE(reply.find("Content-Length: 0\r\n"), reply.npos);
    EXPECT_TRUE(reply.ends_with("\r\n\r\n"));
}

TEST_F(ServiceClientTest, AReplyComesWholeInWhateverWayItIsSent) {
    EXPECT_TRUE(post(L"/chunked") == "one,two," + largeContent(70'000) + ",end");
    EXPECT_EQ(post(L"/until-close"), "until the end");
    EXPECT_EQ(post(L"/zeros"), std::string("a\0b\0", 4));
    EXPECT_EQ(post(L"/empty"), "");
    EXPECT_TRUE(post(L"/large") == largeContent());
}

TEST_F(ServiceClientTest, TheStatusOfAPostIsNotLookedAt) {
    EXPECT_EQ(post(L"/error"), "out of order");
    EXPECT_EQ(post(L"/missing"), "not here");
}

TEST_F(ServiceClientTest, ACutOffReplyIsTakenAsFarAsItCame) {
    EXPECT_EQ(post(L"/truncated"), std::string(400, 'x'));
    EXPECT_TRUE(post(L"/truncated-chunks").starts_with(std::string(400, 'x')));
}

TEST_F(ServiceClientTest, AReplyWithoutEndIsCutOff) {
    const std::string reply = post(L"/endless");
    EXPECT_EQ(reply.size(), kPostReplyLimitBytes);
}

struct FailingStep {
    const char* name;
    std::ptrdiff_t opened;  // handles before it
};

TEST_F(ServiceClientTest, AFailureAtAnyStepGivesNothingAndClosesWhatWasOpened) {
    for (const auto& [name, opened] :
         {FailingStep{"open", 0}, FailingStep{"setTimeouts", 1}, FailingStep{"setOption", 1},
          FailingStep{"connect", 1}, FailingStep{"openRequest", 2}, FailingStep{"addRequestHeaders", 3},
          FailingStep{"sendRequest", 3}, FailingStep{"receiveResponse", 3},
          FailingStep{"queryDataAvailable", 3}, FailingStep{"readData", 3}}) {
        changes.failing = name;
        EXPECT_EQ(post(L"/text"), "") << name;
        const Lines calls = recordedCalls();
        const auto closes = [](const std::string& line) { return line.starts_with("closeHandle"); };
        EXPECT_EQ(std::count_if(calls.begin(), calls.end(), closes), opened) << name;
        EXPECT_TRUE(std::all_of(calls.end() - opened, calls.end(), closes)) << name;
    }
}

// A system that does not know TLS 1.3 refuses the option, which must not open the door to old versions.
TEST_F(ServiceClientTest, WithoutTls13InTheSystemTls12Alone) {
    changes.refusedOption = 10240;
    EXPECT_EQ(post(L"/text"), "hello");
    const Lines calls = recordedCalls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "setOption session 84 2048 4"), 1);
    EXPECT_EQ(
        std::count_if(calls.begin(), calls.end(),
                      [](const std::string& line) { return line.starts_with("setOption session 84 "); }),
        2);
}

TEST_F(ServiceClientTest, ACertificateWithAFaultIsRefused) {
    EXPECT_EQ(post(L"/text"), "hello");
    for (const char* port : {"wrong_name", "expired", "self_signed"}) {
        talkTo(port);
        EXPECT_EQ(post(L"/text"), "") << port;
        EXPECT_FALSE(download(L"/text")) << port;
        EXPECT_EQ(downloaded(), "(no file)") << port;
    }
}

// The second half shows that the server would have answered: the option alone is what refuses it.
TEST_F(ServiceClientTest, OnlyTls12AndNewerIsSpoken) {
    talkTo("tls_1_2");
    EXPECT_EQ(post(L"/text"), "hello");
    for (const char* port : {"tls_1_0", "tls_1_1"}) {
        talkTo(port);
        EXPECT_EQ(post(L"/text"), "") << port;
        EXPECT_FALSE(download(L"/text")) << port;
        talkTo(port, {0, 0, {{WINHTTP_OPTION_SECURE_PROTOCOLS, 0x280}}, 0, ""});
        EXPECT_EQ(post(L"/text"), "hello") << port;
    }
}

TEST_F(ServiceClientTest, AServerThatIsNotThereGivesNothing) {
    talkTo("refused");
    EXPECT_EQ(post(L"/text"), "");
    EXPECT_LT(seconds, kPatientMs / 1000);
    EXPECT_FALSE(download(L"/text"));
}

// A part of a name has at most 63 characters: this one is unknown without anybody being asked.
TEST_F(ServiceClientTest, AnUnknownHostGivesNothing) {
    const std::wstring nobody = std::wstring(64, L'a') + L".localhost";
    EXPECT_EQ(httpPost(nobody, L"/text", "", kPatientMs, recordedWinHttp(changes)), "");
    EXPECT_EQ(recordedCalls()[3], "connect session \"" + std::string(64, 'a') + ".localhost\" 443");
    serviceHost = nobody;
    EXPECT_FALSE(download(L"/text"));
    EXPECT_EQ(downloaded(), "(no file)");
}

TEST_F(ServiceClientTest, AReplyThatNeverComesEndsInTime) {
    EXPECT_EQ(post(L"/silent", "", kShortMs), "");
    EXPECT_LT(seconds, limitSeconds());
}

TEST_F(ServiceClientTest, ABodyThatStallsGivesWhatCameInTime) {
    EXPECT_EQ(post(L"/stalled", "", kShortMs), std::string(400, 'x'));
    EXPECT_LT(seconds, limitSeconds());
}

// Each byte comes well in time, but there is no end of them.
TEST_F(ServiceClientTest, ABodyThatDripsForEverEndsInTime) {
    const std::string reply = post(L"/dripping", "", kShortMs);
    EXPECT_GT(reply.size(), 1u);
    EXPECT_EQ(reply, std::string(reply.size(), '.'));
    EXPECT_LT(seconds, limitSeconds());
}

TEST_F(ServiceClientTest, AMuteHandshakeEndsInTime) {
    talkTo("mute");
    EXPECT_EQ(post(L"/text", "", kShortMs), "");
    EXPECT_LT(seconds, limitSeconds());
    letGo();
}

// No time-out of the system ends this one: the server gives a sign of life again and again.
TEST_F(ServiceClientTest, AHandshakeWithoutEndIsAbandonedInTimeAndCleansUpLater) {
    talkTo("slow");
    EXPECT_EQ(post(L"/text", "", kShortMs), "");
    EXPECT_LT(seconds, limitSeconds());
    EXPECT_EQ(abandonedCalls(), 1);
    EXPECT_EQ(recordedCalls().back(), "sendRequest request none 0 0");
    letGo();
    EXPECT_TRUE(becomesTrue([] { return abandonedCalls() == 0; }));
    const Lines calls = recordedCalls();
    EXPECT_EQ(Lines(calls.end() - 3, calls.end()),
              (Lines{"closeHandle request", "closeHandle connection", "closeHandle session"}));
}

TEST_F(ServiceClientTest, TheEndOfTheProgramWaitsForNoCall) {
    WinHttpServiceClient client(recordedWinHttp(changes));
    EXPECT_EQ(client.post(L"/text", "", kPatientMs), "hello");
    const auto start = std::chrono::steady_clock::now();
    {
        const auto silent = [&] { EXPECT_EQ(client.post(L"/silent", "", kPatientMs), ""); };
        const auto stalled = [&] { EXPECT_FALSE(client.download(L"/stalled", destination)); };
        const std::jthread posting(silent);
        const std::jthread downloading(stalled);
        const auto sent = [] {
            const Lines calls = recordedCalls();
            return std::count(calls.begin(), calls.end(), "sendRequest request none 0 0");
        };
        EXPECT_TRUE(becomesTrue([&] { return sent() == 3 && probe.exists(destination); }));
        client.stop();
    }
    EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
              kPatientMs / 1000 - kSlackSeconds);
    EXPECT_EQ(downloaded(), "(no file)");
    EXPECT_EQ(client.post(L"/text", "", kPatientMs), "");
    EXPECT_FALSE(client.download(L"/text", destination));
    letGo();
}

TEST_F(ServiceClientTest, ADownloadWritesTheFile) {
    EXPECT_TRUE(download(L"/large"));
    EXPECT_TRUE(downloaded() == largeContent());
    EXPECT_TRUE(download(L"/chunked"));
    EXPECT_TRUE(downloaded() == "one,two," + largeContent(70'000) + ",end");
    EXPECT_TRUE(download(L"/until-close"));
    EXPECT_EQ(downloaded(), "until the end");
    EXPECT_TRUE(download(L"/empty"));
    EXPECT_EQ(downloaded(), "");
}

TEST_F(ServiceClientTest, ADownloadAsksWithItsOwnName) {
    EXPECT_TRUE(download(L"/echo"));
    EXPECT_EQ(requestIn(downloaded()),
              (Lines{"GET /echo HTTP/1.1", "Connection: Keep-Alive",
                     "Host: localhost:" + std::to_string(changes.port), "User-Agent: Varnelo/1.0", ""}));
}

TEST_F(ServiceClientTest, AnyStatusBut200LeavesTheOldFileAlone) {
    EXPECT_FALSE(download(L"/missing"));
    EXPECT_EQ(downloaded(), "(no file)");
    writeFile(destination, "old");
    EXPECT_FALSE(download(L"/missing"));
    EXPECT_FALSE(download(L"/error"));
    EXPECT_EQ(downloaded(), "old");
}

TEST_F(ServiceClientTest, ADownloadThatBreaksHalfWayLeavesNoFile) {
    for (const wchar_t* path : {L"/broken", L"/truncated"}) {
        writeFile(destination, "old");
        EXPECT_FALSE(download(path)) << path;
        EXPECT_EQ(downloaded(), "(no file)") << path;
        EXPECT_TRUE(namesIn(folder.path()).empty()) << path;
    }
}

TEST_F(ServiceClientTest, ADownloadThatStallsLeavesNoFile) {
    talkTo("good",
           {0, static_cast<int>(kShortMs), {{WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, kShortMs}}, 0, ""});
    EXPECT_FALSE(download(L"/stalled"));
    EXPECT_FALSE(download(L"/silent"));
    EXPECT_EQ(downloaded(), "(no file)");
}

TEST_F(ServiceClientTest, AFailureAtAnyStepOfADownloadLeavesNoFile) {
    for (const char* name : {"open", "setTimeouts", "setOption", "connect", "openRequest", "sendRequest",
                             "receiveResponse", "queryHeaders", "queryDataAvailable", "readData"}) {
        changes.failing = name;
        EXPECT_FALSE(download(L"/text")) << name;
        EXPECT_EQ(downloaded(), "(no file)") << name;
    }
}

TEST_F(ServiceClientTest, ADestinationThatCannotBeWrittenFailsTheDownload) {
    const FileHandle inUse(
        CreateFileW(destination.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    ASSERT_TRUE(inUse);
    EXPECT_FALSE(download(L"/text"));
    EXPECT_TRUE(probe.exists(destination));
    EXPECT_FALSE(httpDownload(L"/text", folder.path() + L"\\none\\setup.exe", recordedWinHttp(changes)));
}

TEST_F(ServiceClientTest, CallsRunSideBySideOnManyThreads) {
    const WinHttpCalls calls = recordedWinHttp(changes);
    std::vector<std::string> replies(8);
    {
        std::vector<std::jthread> threads;
        for (std::string& reply : replies)
            threads.emplace_back([&] { reply = httpPost(L"localhost", L"/large", "", kPatientMs, calls); });
    }
    for (const std::string& reply : replies) EXPECT_TRUE(reply == largeContent());
}

// The server of tools/service, with its example table.
TEST_F(ServiceClientTest, TheReferenceServerIsUnderstood) {
    talkTo("reference");
    const auto ask = [this](const std::wstring& path, const std::string& body) {
        return wideFromUtf8(post(path, body));
    };
    const std::wstring version = ask(L"/php/version_info.php", "language=German&country=Germany");
    EXPECT_EQ(jsonValue(version, L"latest_version"), L"1.0.0.1");
    EXPECT_EQ(jsonValue(version, L"update_deadline"), L"2027-06-30");
    EXPECT_EQ(jsonValue(version, L"update_required"), L"false");
    EXPECT_EQ(jsonValue(version, L"download_url"), L"/setup/Varnelo-1.0.0.1.exe");
    const std::wstring setup = ask(L"/php/get_setup_url.php", "");
    EXPECT_EQ(jsonValue(setup, L"setup_url"), L"/setup/Varnelo-1.0.0.1.exe");
    EXPECT_EQ(jsonValue(setup, L"file_name"), L"Varnelo-1.0.0.1.exe");
    EXPECT_EQ(ask(L"/php/api_llm.php", R"({"model":"m","prompts":[{"id":".tex","prompt":")" +
                                           jsonEscape("\"?\"\n") + R"("},{"id":".what","prompt":"?"}]})"),
              LR"({".tex":{"content":"{\"group\":\"Text Documents\"}"}})");
}

}  // namespace
}  // namespace varnelo
