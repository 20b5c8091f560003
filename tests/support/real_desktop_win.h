#pragma once

// The test user's own desktop folder, with files that a test puts there and that are gone after it.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/file_probe_win.h"
#include "model/shell_namespace_win.h"
#include "platform/com_apartment.h"

namespace varnelo {

// An empty folder of this process, removed with all its files at the end.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::wstring& name);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::wstring& path() const { return folder; }

private:
    std::wstring folder;
};

void writeFile(const std::wstring& path, const std::string& content = "content");
void setWriteTime(const std::wstring& path, std::uint64_t fileTime);
void makeLink(const std::wstring& linkPath, const std::wstring& target);
std::vector<std::wstring> namesIn(const std::wstring& folder);

// Runs the program change_files.exe, which stands beside the tests, to its end: another process changes
// files.
void anotherProcess(const std::wstring& arguments);

// Asks again and again until the answer is yes, for ten seconds at most.
::testing::AssertionResult becomesTrue(const std::function<bool()>& question);

class RealDesktopTest : public ::testing::Test {
protected:
    RealDesktopTest();
    ~RealDesktopTest() override;

    // In the desktop folder. A test's names begin with "00 ": these files are removed before it and after it.
    std::wstring pathOf(const std::wstring& name) const { return desktopFolder + L"\\" + name; }

    ComApartment apartment{ComApartment::Kind::Single};
    WindowsShellNamespace shell;
    WindowsFileProbe probe;
    std::wstring desktopFolder;

private:
    void emptyTheDesktop() const;
};

}  // namespace varnelo
