#include "platform/known_folders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/file_bytes.h"
#include "platform/utf.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

namespace varnelo {
namespace {

namespace fs = std::filesystem;

// What appDataPath ends with.
const auto fails = testing::ThrowsMessage<fs::filesystem_error>(testing::HasSubstr("create_directories"));

#ifndef _WIN32
class AppDataPath : public testing::Test {
protected:
    test::TempFolder roaming;
    test::ScopedVariable variable{"XDG_CONFIG_HOME", utf8FromWide(roaming.path())};
};

TEST_F(AppDataPath, MakesTheFolderThatItNames) {
    const std::wstring path = appDataPath(L"Varnelo", L"desktop.cache");
    EXPECT_EQ(path, roaming.path() + L"/Varnelo/desktop.cache");
    EXPECT_TRUE(fs::is_directory(roaming.file(L"Varnelo")));
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(AppDataPath, ThrowsWhenTheFolderCannotBeMade) {
    ASSERT_TRUE(replaceFile(roaming.file(L"Varnelo"), {}));
    EXPECT_THAT([] { appDataPath(L"Varnelo", L"desktop.cache"); }, fails);
}

TEST(KnownFolders, WithoutTheirVariablesTheyAreBelowTheHome) {
    const test::TempFolder home;
    const test::ScopedVariable variable("HOME", utf8FromWide(home.path()));
    const test::ScopedVariable config("XDG_CONFIG_HOME", "");
    EXPECT_EQ(knownFolder(KnownFolder::Profile), home.path());
    EXPECT_EQ(knownFolder(KnownFolder::Desktop), home.path() + L"/Desktop");
    EXPECT_EQ(knownFolder(KnownFolder::RoamingAppData), home.path() + L"/.config");
    EXPECT_EQ(knownFolder(KnownFolder::PublicDesktop), L"");
}
#else
TEST(KnownFolders, TheSystemNamesAllOfThem) {
    for (const KnownFolder folder :
         {KnownFolder::RoamingAppData, KnownFolder::LocalAppData, KnownFolder::ProgramData,
          KnownFolder::Desktop, KnownFolder::PublicDesktop, KnownFolder::Profile}) {
        const std::wstring path = knownFolder(folder);
        EXPECT_EQ(path.substr(1, 2), L":\\") << utf8FromWide(path);
        EXPECT_NE(path.back(), L'\\') << utf8FromWide(path);
    }
}

TEST(KnownFolders, AppDataPathMakesTheFolderThatItNames) {
    const std::wstring folder = knownFolder(KnownFolder::RoamingAppData) + L"\\Varnelo Path Test";
    EXPECT_EQ(appDataPath(L"Varnelo Path Test", L"desktop.cache"), folder + L"\\desktop.cache");
    EXPECT_TRUE(fs::is_directory(folder));
    fs::remove(folder);
}

TEST(KnownFolders, AppDataPathThrowsWhenTheFolderCannotBeMade) {
    const std::wstring folder = knownFolder(KnownFolder::RoamingAppData) + L"\\Varnelo Path Test";
    ASSERT_TRUE(replaceFile(folder, {}));
    EXPECT_THAT([] { appDataPath(L"Varnelo Path Test", L"desktop.cache"); }, fails);
    fs::remove(folder);
}
#endif

}  // namespace
}  // namespace varnelo
