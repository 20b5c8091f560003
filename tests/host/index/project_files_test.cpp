#include "index/project_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace varnelo {
namespace {

using Rows = std::vector<std::wstring>;

Rows rowsOf(std::span<const std::wstring_view> rows) { return Rows(rows.begin(), rows.end()); }

std::wstring inCapitals(std::wstring_view text) {
    std::wstring result(text);
    for (wchar_t& unit : result) {
        if (unit >= L'a' && unit <= L'z') unit = static_cast<wchar_t>(unit - L'a' + L'A');
    }
    return result;
}

TEST(ProjectFilesTest, TheNamesAreThese49) {
    const Rows expected = {L"cmakelists.txt",  L"makefile",
                           L"gnumakefile",     L"rakefile",
                           L"gemfile",         L"gruntfile.js",
                           L"gulpfile.js",     L"justfile",
                           L"snakefile",       L"jenkinsfile",
                           L"vagrantfile",     L"dockerfile",
                           L"containerfile",   L"procfile",
                           L"buildfile",       L"taskfile.yml",
                           L"taskfile.yaml",   L"meson.build",
                           L"build.gradle",    L"build.gradle.kts",
                           L"settings.gradle", L"settings.gradle.kts",
                           L"pom.xml",         L"build.xml",
                           L"project.clj",     L"project.godot",
                           L"cargo.toml",      L"go.mod",
                           L"package.json",    L"composer.json",
                           L"pubspec.yaml",    L"mix.exs",
                           L"build.zig",       L"premake5.lua",
                           L"premake4.lua",    L"sconscript",
                           L"sconstruct",      L"build.sbt",
                           L"cabal.project",   L"stack.yaml",
                           L"dub.json",        L"dub.sdl",
                           L"conanfile.txt",   L"conanfile.py",
                           L"vcpkg.json",      L"buck",
                           L"build.buck",      L"workspace",
                           L"build.bazel"};
    EXPECT_EQ(expected.size(), 49u);
    EXPECT_EQ(rowsOf(projectFileNames()), expected);
}

TEST(ProjectFilesTest, TheExtensionsAreThese68) {
    const Rows expected = {
        L".sln",    L".vcxproj",   L".vcproj",      L".csproj",    L".vbproj", L".fsproj",
        L".shproj", L".sqlproj",   L".wixproj",     L".ccproj",    L".sfproj", L".modelproj",
        L".dbproj", L".synproj",   L".njsproj",     L".esproj",    L".proj",   L".pro",
        L".cmake",  L".xcodeproj", L".xcworkspace", L".pbxproj",   L".iml",    L".project",
        L".cbp",    L".workspace", L".dev",         L".dproj",     L".dpr",    L".bpr",
        L".bpg",    L".groupproj", L".dpk",         L".uproject",  L".unity",  L".unitypackage",
        L".tscn",   L".yyp",       L".blend",       L".hip",       L".hipnc",  L".prproj",
        L".aep",    L".sesx",      L".indd",        L".drp",       L".fcpxml", L".fcpbundle",
        L".logicx", L".band",      L".als",         L".flp",       L".cpr",    L".ptx",
        L".knwf",   L".lvproj",    L".prj",         L".slx",       L".dwg",    L".rvt",
        L".rfa",    L".sldprt",    L".sldasm",      L".kicad_pro", L".prjpcb", L".sch",
        L".brd",    L".tf"};
    EXPECT_EQ(expected.size(), 68u);
    EXPECT_EQ(rowsOf(projectExtensions()), expected);
}

TEST(ProjectFilesTest, TheFalsePositivesAreTheseFour) {
    const Rows expected = {L"qtvars.pro", L"qtvars_p.pro", L".qmake.stash.pro",
                           L"directory.build.props.proj"};
    EXPECT_EQ(expected.size(), 4u);
    EXPECT_EQ(rowsOf(projectFalsePositives()), expected);
}

TEST(ProjectFilesTest, EveryNameOfTheListPassesInAnyCase) {
    for (const std::wstring_view name : projectFileNames()) {
        EXPECT_TRUE(isProjectFileName(name));
        EXPECT_TRUE(isProjectFileName(inCapitals(name)));
    }
    EXPECT_TRUE(isProjectFileName(L"CMakeLists.txt"));
    EXPECT_TRUE(isProjectFileName(L"Makefile"));
    EXPECT_TRUE(isProjectFileName(L"WORKSPACE"));
}

TEST(ProjectFilesTest, ANameOfTheListFailsWithMoreAroundIt) {
    EXPECT_FALSE(isProjectFileName(L"makefile.am"));
    EXPECT_FALSE(isProjectFileName(L"makefile."));
    EXPECT_FALSE(isProjectFileName(L"my makefile"));
    EXPECT_FALSE(isProjectFileName(L"package.json.bak"));
    EXPECT_FALSE(isProjectFileName(L"package.jso"));
    EXPECT_FALSE(isProjectFileName(L"other.json"));
}

TEST(ProjectFilesTest, EveryExtensionOfTheListPassesInAnyCase) {
    for (const std::wstring_view extension : projectExtensions()) {
        EXPECT_TRUE(isProjectFileName(L"thing" + std::wstring(extension)));
        EXPECT_TRUE(isProjectFileName(L"Thing" + inCapitals(extension)));
        EXPECT_FALSE(isProjectFileName(L"thing" + std::wstring(extension.substr(1)))) << "without its dot";
        EXPECT_FALSE(isProjectFileName(L"thing" + std::wstring(extension) + L"x"));
    }
}

TEST(ProjectFilesTest, OnlyTheLastExtensionCounts) {
    EXPECT_TRUE(isProjectFileName(L"game.old.sln"));
    EXPECT_TRUE(isProjectFileName(L"game..sln"));
    EXPECT_FALSE(isProjectFileName(L"game.sln.old"));
    EXPECT_FALSE(isProjectFileName(L"game.sln."));
}

TEST(ProjectFilesTest, ADotInFrontCounts) {
    EXPECT_TRUE(isProjectFileName(L".project"));
    EXPECT_TRUE(isProjectFileName(L".Sln"));
}

TEST(ProjectFilesTest, GeneratedFilesFailInAnyCase) {
    for (const std::wstring_view name : projectFalsePositives()) {
        EXPECT_FALSE(isProjectFileName(name));
        EXPECT_FALSE(isProjectFileName(inCapitals(name)));
        EXPECT_TRUE(isProjectFileName(L"my" + std::wstring(name)))
            << "only the whole name is a generated file";
    }
    EXPECT_FALSE(isProjectFileName(L"QtVars.pro"));
    EXPECT_TRUE(isProjectFileName(L"qtvars2.pro"));
}

TEST(ProjectFilesTest, OtherNamesFail) {
    EXPECT_FALSE(isProjectFileName(L""));
    EXPECT_FALSE(isProjectFileName(L"."));
    EXPECT_FALSE(isProjectFileName(L"build"));
    EXPECT_FALSE(isProjectFileName(L"sln"));
    EXPECT_FALSE(isProjectFileName(L"notes.txt"));
}

TEST(ProjectFilesTest, LettersBeyondAsciiKeepTheirCase) {
    EXPECT_FALSE(isProjectFileName(L"ma\u212Aefile")) << "the Kelvin sign is no k";
}

TEST(ProjectFilesTest, ARecordIsAskedByItsName) {
    NTFSIndex index;
    const std::uint32_t project = index.addRecord({30, 5, 0, 0, 0, 0}, L"CMakeLists.txt");
    const std::uint32_t other = index.addRecord({31, 5, 0, 0, 0, 0}, L"notes.txt");
    const std::uint32_t folder = index.addRecord({32, 5, FileRecord::kDirectory, 0, 0, 0}, L"workspace");
    EXPECT_TRUE(isProjectFile(index, project));
    EXPECT_FALSE(isProjectFile(index, other));
    EXPECT_TRUE(isProjectFile(index, folder)) << "a folder is told apart by whoever asks";
    EXPECT_FALSE(isProjectFile(index, 3));
    EXPECT_FALSE(isProjectFile(index, 0xFFFFFFFF));
}

TEST(ProjectFilesTest, ARecordWhoseNameLiesNowhereIsNone) {
    NTFSIndex index;
    index.addRecord({30, 5, 0, 0, 0, 0}, L"makefile");
    const test::TempFolder folder;
    ASSERT_TRUE(index.saveCache(folder.path(), L"ntfs.cache"));
    // The record's field for the place of its name: behind the header, one count, no volume and another
    // count.
    constexpr std::streamoff kNameOffsetAt = 8 + 8 + 8 + 36;
    std::fstream file(std::filesystem::path(folder.file(L"ntfs.cache")),
                      std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(kNameOffsetAt);
    file.write("\x09\0\0\0", 4);  // the pool has nine units
    file.close();
    NTFSIndex damaged;
    ASSERT_TRUE(damaged.loadCache(folder.path(), L"ntfs.cache"));
    ASSERT_EQ(damaged.records()[0].nameOffset, 9u);
    EXPECT_FALSE(isProjectFile(damaged, 0));
    EXPECT_TRUE(isProjectFile(index, 0));
}

}  // namespace
}  // namespace varnelo
