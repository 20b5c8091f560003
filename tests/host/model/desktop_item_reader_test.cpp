#include "model/desktop_item_reader.h"

#include <gtest/gtest.h>

#include "support/scripted_shell.h"

namespace varnelo {
namespace {

class DesktopItemReaderTest : public ::testing::Test {
protected:
    // What fillFromPath makes of a file of the desktop; its answer in `shown`.
    DesktopFileInfo filled(const std::wstring& name) {
        DesktopFileInfo info;
        shown = reader.fillFromPath(ScriptedShell::pathOf(name), info);
        return info;
    }
    ScriptedFile link(const std::wstring& target) {
        ScriptedFile file;
        file.linkTarget = target;
        return file;
    }
    ScriptedFile withContent(const std::string& content) {
        ScriptedFile file;
        file.content = content;
        return file;
    }

    ScriptedShell shell;
    DesktopItemReader reader{
        shell, shell, {ScriptedShell::kDesktop, ScriptedShell::kPublicDesktop, ScriptedShell::pathOf(L"me")}};
    bool shown = false;
};

TEST_F(DesktopItemReaderTest, AFileIsCutIntoItsParts) {
    ScriptedFile file;
    file.sizeBytes = 5'000'000'000;
    file.times = {fileTimeOf(100), fileTimeOf(200), fileTimeOf(300)};
    shell.put(L"MyTax Report_2023.PDF", file);
    const DesktopFileInfo info = filled(L"MyTax Report_2023.PDF");
    ASSERT_TRUE(shown);
    EXPECT_EQ(info.fullPath, L"X:\\desk\\MyTax Report_2023.PDF");
    EXPECT_EQ(info.fileName, L"MyTax Report_2023.PDF");
    EXPECT_EQ(info.extension, L"pdf");
    EXPECT_EQ(info.parentFolder, L"X:\\desk");
    EXPECT_EQ(info.targetPath, L"");
    EXPECT_EQ(info.times(), file.times);
    EXPECT_EQ(info.timestamp, 300);
    EXPECT_EQ(info.fileSize, 5'000'000'000u);
    EXPECT_FALSE(info.isDirectory);
    EXPECT_FALSE(info.isSpecial);
    EXPECT_EQ(info.tokens, (std::vector<std::wstring>{L"my", L"tax", L"report"}));
}

TEST_F(DesktopItemReaderTest, ASlashSeparatesToo) {
    shell.put(L"X:\\desk/a.txt");
    DesktopFileInfo info;
    ASSERT_TRUE(reader.fillFromPath(L"X:\\desk/a.txt", info));
    EXPECT_EQ(info.fileName, L"a.txt");
    EXPECT_EQ(info.parentFolder, L"X:\\desk");
}

TEST_F(DesktopItemReaderTest, APathWithoutASeparatorIsItsOwnNameAndFolder) {
    DesktopFileInfo info;
    EXPECT_FALSE(reader.fillFromPath(L"lonely.txt", info));
    EXPECT_EQ(info.fileName, L"lonely.txt");
    EXPECT_EQ(info.parentFolder, L"lonely.txt");
}

TEST_F(DesktopItemReaderTest, ANameWithoutADotHasNoExtension) {
    shell.put(L"README");
    EXPECT_EQ(filled(L"README").extension, L"");
    shell.put(L"odd.");
    EXPECT_EQ(filled(L"odd.").extension, L"");
}

TEST_F(DesktopItemReaderTest, ANameWithoutADotKeepsTheExtensionThatWasThere) {
    shell.put(L"pack");
    DesktopFileInfo info;
    info.extension = L"zip";
    ASSERT_TRUE(reader.fillFromPath(ScriptedShell::pathOf(L"pack"), info));
    EXPECT_EQ(info.extension, L"zip");
}

TEST_F(DesktopItemReaderTest, ADirectoryHasNoSize) {
    ScriptedFile file;
    file.isDirectory = true;
    file.sizeBytes = 4096;
    shell.put(L"Pictures", file);
    const DesktopFileInfo info = filled(L"Pictures");
    EXPECT_TRUE(shown);
    EXPECT_TRUE(info.isDirectory);
    EXPECT_EQ(info.fileSize, 0u);
}

TEST_F(DesktopItemReaderTest, AFileThatIsGoneOrUnreadableIsNoItem) {
    filled(L"gone.txt");
    EXPECT_FALSE(shown);
    ScriptedFile file;
    file.readable = false;
    shell.put(L"locked.txt", file);
    filled(L"locked.txt");
    EXPECT_FALSE(shown);
}

TEST_F(DesktopItemReaderTest, ALinkIsReadFromItsTarget) {
    ScriptedFile target;
    target.sizeBytes = 77;
    target.times = {fileTimeOf(1), fileTimeOf(2), fileTimeOf(3)};
    shell.put(L"X:\\work\\Plan.XLSX", target);
    shell.put(L"Plan.lnk", link(L"X:\\work\\Plan.XLSX"));
    const DesktopFileInfo info = filled(L"Plan.lnk");
    ASSERT_TRUE(shown);
    EXPECT_EQ(info.fullPath, L"X:\\desk\\Plan.lnk");
    EXPECT_EQ(info.fileName, L"Plan.lnk");
    EXPECT_EQ(info.extension, L"xlsx");
    EXPECT_EQ(info.parentFolder, L"X:\\work");
    EXPECT_EQ(info.targetPath, L"X:\\work\\Plan.XLSX");
    EXPECT_EQ(info.times(), target.times);
    EXPECT_EQ(info.fileSize, 77u);
    EXPECT_EQ(info.tokens, (std::vector<std::wstring>{L"plan"}));
}

TEST_F(DesktopItemReaderTest, ALinkToATargetWithoutAnExtensionStaysALink) {
    shell.put(L"X:\\tools\\make");
    shell.put(L"make.lnk", link(L"X:\\tools\\make"));
    EXPECT_EQ(filled(L"make.lnk").extension, L"lnk");
    EXPECT_TRUE(shown);
}

TEST_F(DesktopItemReaderTest, ADotInTheFolderOfATargetCountsAsItsExtension) {
    shell.put(L"X:\\v1.2\\make");
    shell.put(L"make.lnk", link(L"X:\\v1.2\\make"));
    EXPECT_EQ(filled(L"make.lnk").extension, L"2\\make");
}

TEST_F(DesktopItemReaderTest, ALinkToAMissingFileIsNoItem) {
    shell.put(L"old.lnk", link(L"X:\\work\\gone.txt"));
    filled(L"old.lnk");
    EXPECT_FALSE(shown);
}

TEST_F(DesktopItemReaderTest, ALinkToADirectoryIsADirectory) {
    ScriptedFile folder;
    folder.isDirectory = true;
    shell.put(L"X:\\work", folder);
    shell.put(L"work.lnk", link(L"X:\\work"));
    const DesktopFileInfo info = filled(L"work.lnk");
    ASSERT_TRUE(shown);
    EXPECT_TRUE(info.isDirectory);
    EXPECT_EQ(info.fileSize, 0u);
    EXPECT_EQ(info.extension, L"lnk");
    EXPECT_EQ(info.parentFolder, L"X:");
}

TEST_F(DesktopItemReaderTest, ALinkWithoutATargetStandsForItself) {
    ScriptedFile file;
    file.sizeBytes = 321;
    shell.put(L"shell object.lnk", file);
    const DesktopFileInfo info = filled(L"shell object.lnk");
    ASSERT_TRUE(shown);
    EXPECT_EQ(info.targetPath, L"");
    EXPECT_EQ(info.extension, L"lnk");
    EXPECT_EQ(info.fileSize, 321u);
}

TEST_F(DesktopItemReaderTest, ALinkThatLostItsTargetForgetsIt) {
    shell.put(L"Plan.lnk");
    DesktopFileInfo info;
    info.targetPath = L"X:\\work\\Plan.xlsx";
    ASSERT_TRUE(reader.fillFromPath(ScriptedShell::pathOf(L"Plan.lnk"), info));
    EXPECT_EQ(info.targetPath, L"");
}

TEST_F(DesktopItemReaderTest, ATargetWithoutASeparatorLeavesTheFolderOfTheLink) {
    shell.put(L"tool.lnk", link(L"tool.exe"));
    const DesktopFileInfo info = filled(L"tool.lnk");
    EXPECT_EQ(info.extension, L"exe");
    EXPECT_EQ(info.parentFolder, ScriptedShell::kDesktop);
}

TEST_F(DesktopItemReaderTest, AnInternetShortcutKeepsItsAddressAsTarget) {
    shell.put(L"News.URL", withContent("[InternetShortcut]\r\nURL=https://news.example/\r\n"));
    const DesktopFileInfo info = filled(L"News.URL");
    ASSERT_TRUE(shown);
    EXPECT_EQ(info.targetPath, L"https://news.example/");
    EXPECT_EQ(info.extension, L"url");
    EXPECT_EQ(info.parentFolder, L"X:\\desk");
}

TEST_F(DesktopItemReaderTest, AnInternetShortcutWithoutAnAddressIsAnOrdinaryItem) {
    shell.put(L"Empty.url", withContent("[InternetShortcut]\r\n"));
    EXPECT_EQ(filled(L"Empty.url").targetPath, L"");
    EXPECT_TRUE(shown);
}

TEST_F(DesktopItemReaderTest, ALinkToAnInternetShortcutKeepsThatFileAsTarget) {
    shell.put(L"X:\\work\\News.url", withContent("URL=https://news.example/"));
    shell.put(L"News.lnk", link(L"X:\\work\\News.url"));
    const DesktopFileInfo info = filled(L"News.lnk");
    EXPECT_TRUE(shown);
    EXPECT_EQ(info.extension, L"url");
    EXPECT_EQ(info.targetPath, L"X:\\work\\News.url");
}

TEST_F(DesktopItemReaderTest, AWriteBefore1970KeepsItsRawTimeOnly) {
    ScriptedFile file;
    file.times.lastWrite = 12345;
    shell.put(L"ancient.txt", file);
    const DesktopFileInfo info = filled(L"ancient.txt");
    EXPECT_EQ(info.timestamp, 0);
    EXPECT_EQ(info.lastWriteTime, 12345u);
}

TEST_F(DesktopItemReaderTest, OnlyItemsOfTheTwoDesktopFoldersAreRead) {
    shell.put(L"a.txt");
    shell.put(L"X:\\public\\b.txt");
    shell.put(L"X:\\work\\c.txt");
    const auto read = [this](const std::wstring& name) {
        return reader.read(ScriptedShell::list(name), ScriptedShell::root()) != nullptr;
    };
    EXPECT_TRUE(read(L"a.txt"));
    EXPECT_TRUE(read(L"X:\\PUBLIC\\b.txt"));
    EXPECT_FALSE(read(L"X:\\work\\c.txt"));
    EXPECT_FALSE(read(L"gone.txt"));
}

TEST_F(DesktopItemReaderTest, AnItemWhosePathHasNoSeparatorIsDropped) {
    shell.put(L"X:lonely.txt");
    DesktopFileInfo info;
    ASSERT_TRUE(reader.fillFromPath(L"X:lonely.txt", info));
    // The path is no folder of its own here, not even of a desktop with that name.
    const DesktopItemReader named(shell, shell, {L"X:lonely.txt", L"X:lonely.txt", L""});
    EXPECT_EQ(named.read(ScriptedShell::list(L"X:lonely.txt"), ScriptedShell::root()), nullptr);
}

TEST_F(DesktopItemReaderTest, AnUnknownDesktopFolderMatchesNothing) {
    shell.put(L"\\odd.txt");
    const DesktopItemReader lost(shell, shell, {});
    EXPECT_EQ(lost.read(ScriptedShell::list(L"\\odd.txt"), ItemIdList()), nullptr);
    shell.put(L"a.txt");
    EXPECT_EQ(lost.read(ScriptedShell::list(L"a.txt"), ItemIdList()), nullptr);
}

TEST_F(DesktopItemReaderTest, TheProfileFolderOnTheDesktopIsSpecialThoughItHasAPath) {
    ScriptedFile folder;
    folder.isDirectory = true;
    shell.put(L"ME", folder);
    const auto info = reader.read(ScriptedShell::list(L"ME"), ScriptedShell::root());
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->isSpecial);
    EXPECT_EQ(info->fullPath, L"X:\\desk\\ME");
}

TEST_F(DesktopItemReaderTest, AVirtualItemIsKnownByItsNameAlone) {
    shell.putVirtual(L"Recycle Bin");
    const auto info = reader.read(ScriptedShell::virtualList(L"Recycle Bin"), ScriptedShell::root());
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->isSpecial);
    EXPECT_EQ(info->fileName, L"Recycle Bin");
    EXPECT_EQ(info->fullPath, L"Recycle Bin");
    EXPECT_EQ(info->pidl, ScriptedShell::virtualList(L"Recycle Bin"));
    EXPECT_EQ(info->lastWriteTime, 0u);
    EXPECT_TRUE(info->tokens.empty());
}

TEST_F(DesktopItemReaderTest, AVirtualItemOfAnotherFolderIsDroppedOnceTheRootIsKnown) {
    shell.putVirtual(L"Panel/Sound");
    const ItemIdList item = ScriptedShell::virtualList(L"Panel/Sound");
    EXPECT_EQ(reader.read(item, ScriptedShell::root()), nullptr);
    EXPECT_NE(reader.read(item, ItemIdList()), nullptr);
}

TEST_F(DesktopItemReaderTest, AVirtualItemWithoutANameIsDropped) {
    EXPECT_EQ(reader.read(ScriptedShell::virtualList(L"Nobody"), ScriptedShell::root()), nullptr);
}

TEST_F(DesktopItemReaderTest, AnItemReadByItsPathHasNoList) {
    shell.put(L"a.txt");
    const auto info = reader.read(ScriptedShell::pathOf(L"a.txt"));
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->pidl.empty());
    EXPECT_EQ(reader.read(ScriptedShell::pathOf(L"gone.txt")), nullptr);
}

}  // namespace
}  // namespace varnelo
