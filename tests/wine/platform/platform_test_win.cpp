#include <windows.h>

#include <shlobj.h>

#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "platform/com_apartment.h"
#include "platform/file_bytes.h"
#include "platform/handles_win.h"
#include "platform/item_id_list_win.h"
#include "platform/utf.h"
#include "support/temp_folder.h"

namespace varnelo {
namespace {

APTTYPE apartmentOfThisThread() {
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier{};
    return CoGetApartmentType(&type, &qualifier) == S_OK ? type : APTTYPE_CURRENT;
}

TEST(ComApartmentTest, LastsAsLongAsTheObject) {
    std::thread([] {
        {
            const ComApartment apartment(ComApartment::Kind::Single);
            EXPECT_TRUE(apartment.entered());
            const APTTYPE type = apartmentOfThisThread();
            EXPECT_TRUE(type == APTTYPE_STA || type == APTTYPE_MAINSTA) << type;
            const ComApartment other(ComApartment::Kind::Multi);
            EXPECT_FALSE(other.entered());
        }
        const ComApartment apartment(ComApartment::Kind::Multi);
        EXPECT_TRUE(apartment.entered());
        EXPECT_EQ(apartmentOfThisThread(), APTTYPE_MTA);
    }).join();
}

TEST(Handles, ClosingKeepsTheLastError) {
    EventHandle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    ASSERT_TRUE(event);
    const HANDLE raw = event.get();
    SetLastError(4711);
    event.reset();
    EXPECT_EQ(GetLastError(), 4711u);
    EXPECT_EQ(WaitForSingleObject(raw, 0), WAIT_FAILED) << "it is closed";
}

TEST(Handles, AFileThatCannotBeOpenedIsNoHandle) {
    const FileHandle file(
        CreateFileW(L"C:\\no such file", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(file);
}

TEST(ItemIdListOfTheShell, SurvivesTheWayThroughBytes) {
    const ComApartment apartment(ComApartment::Kind::Single);
    const test::TempFolder folder;
    ShellIdList made;
    ASSERT_TRUE(SUCCEEDED(SHParseDisplayName(folder.path().c_str(), nullptr, made.put(), 0, nullptr)));
    const ItemIdList list = itemIdListFrom(made.get());
    EXPECT_EQ(list.bytes().size(), ILGetSize(made.get()));
    EXPECT_TRUE(ILIsEqual(shellIdList(list), made.get()));
    const auto read = ItemIdList::fromBytes(list.bytes());
    ASSERT_TRUE(read);
    wchar_t path[MAX_PATH] = {};
    EXPECT_TRUE(SHGetPathFromIDListW(shellIdList(*read), path));
    EXPECT_EQ(folder.path(), path);
}

TEST(ItemIdListOfTheShell, NullIsTheEmptyList) {
    EXPECT_TRUE(itemIdListFrom(nullptr).empty());
    EXPECT_EQ(shellIdList(ItemIdList()), nullptr);
}

TEST(FileBytesOfTheSystem, AFileHeldOpenIsNotReplacedAndNothingIsLeft) {
    const test::TempFolder folder;
    const std::wstring path = folder.file(L"some.cache");
    const std::vector<std::uint8_t> old{1, 2, 3};
    ASSERT_TRUE(replaceFile(path, old));
    {
        const FileHandle holder(
            CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(holder);
        EXPECT_FALSE(replaceFile(path, std::vector<std::uint8_t>{4}));
    }
    EXPECT_EQ(readWholeFile(path), old);
    WIN32_FIND_DATAW found;
    const FindHandle search(FindFirstFileW((folder.path() + L"\\*.new").c_str(), &found));
    EXPECT_FALSE(search);
}

std::wstring systemsWide(const std::string& text) {
    std::wstring wide(text.size() * 2 + 1, L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(
        CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

std::string systemsUtf8(const std::wstring& text) {
    std::string utf8(text.size() * 3 + 1, '\0');
    utf8.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(),
                            static_cast<int>(utf8.size()), nullptr, nullptr)));
    return utf8;
}

TEST(UtfOfTheSystem, GivesTheSameUtf8ForAnyUnits) {
    std::mt19937 random(5);
    for (int round = 0; round < 5000; ++round) {
        std::wstring text;
        for (int i = 0; i < 8; ++i) {
            text.push_back(
                static_cast<wchar_t>(random() % 3 ? 0xD800 + random() % 0x800 : random() & 0xFFFF));
        }
        EXPECT_EQ(utf8FromWide(text), systemsUtf8(text));
    }
}

TEST(UtfOfTheSystem, GivesTheSameTextForWellFormedUtf8) {
    std::mt19937 random(6);
    for (int round = 0; round < 5000; ++round) {
        std::wstring units;
        for (int i = 0; i < 8; ++i) units.push_back(static_cast<wchar_t>(random() & 0xFFFF));
        const std::string text = utf8FromWide(units);
        EXPECT_EQ(wideFromUtf8(text), systemsWide(text));
    }
}

std::wstring withoutReplacements(std::wstring text) {
    std::erase(text, L'\xFFFD');
    return text;
}

// How many replacement characters stand for a broken sequence differs between versions of the system (Wine
// takes overlong forms and surrogates as one), and so does a sequence cut off at the end of the text. What
// does not differ are the characters between them.
TEST(UtfOfTheSystem, FindsTheSameCharactersInBrokenUtf8) {
    std::mt19937 random(7);
    const std::string heads = "\xC3\xE0\xE6\xED\xF0\xF4\xC0\xFF\x80";
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (int i = 0; i < 6; ++i) {
            text.push_back(random() % 2 ? heads[random() % heads.size()] : static_cast<char>(random()));
        }
        text += "end.";
        const std::wstring ours = wideFromUtf8(text);
        const std::wstring theirs = systemsWide(text);
        EXPECT_EQ(withoutReplacements(ours), withoutReplacements(theirs)) << testing::PrintToString(text);
        EXPECT_EQ(ours.find(L'\xFFFD') == ours.npos, theirs.find(L'\xFFFD') == theirs.npos);
    }
}

}  // namespace
}  // namespace varnelo
