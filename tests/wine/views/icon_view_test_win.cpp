#include "views/icon_view_win.h"

#include <gtest/gtest.h>

#include <set>

#include "support/device_calls_win.h"
#include "support/icon_pane_win.h"
#include "views/shell_list_win.h"

namespace varnelo {
namespace {

using reference::Picture;

constexpr int kWidth = 640;
constexpr int kHeight = 480;

int opaquePixels(const Picture& picture) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) count += picture.at(x, y).a > 0.5F ? 1 : 0;
    }
    return count;
}

bool samePlace(const Picture& a, const Picture& b) { return reference::greatestDifference(a, b).steps == 0; }

class IconViewTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(pane.window.ready); }

    // Entries with an id list each, spread over `types` extensions of their own.
    std::vector<FileEntry> filesOfTypes(int count, int types) {
        std::vector<FileEntry> entries;
        for (int i = 0; i < count; ++i) {
            const std::wstring name = L"f" + std::to_wstring(i) + L".vt" + std::to_wstring(i % types);
            entries.push_back(pane.file(folder.addFile(name)));
        }
        return entries;
    }

    FilesFolder folder;
    IconPane pane{kWidth, kHeight};
};

TEST_F(IconViewTest, RealItemsGetTexturesThatShowSomething) {
    pane.show({pane.file(folder.addFile(L"letter.txt")), pane.file(folder.addFile(L"program.exe")),
               pane.file(folder.addFile(L"archive.zip")), pane.file(folder.addFolder(L"folder"))});
    ASSERT_TRUE(pane.settle());
    for (const IconCell& cell : pane.view.cells) {
        ASSERT_TRUE(cell.texture) << cell.entry.displayName.size();
        const Picture icon = pane.window.contentOf(cell.texture->view.get());
        EXPECT_EQ(icon.width(), static_cast<int>(pane.view.baseIconSize));
        EXPECT_GT(opaquePixels(icon), 50);
        EXPECT_LT(opaquePixels(icon), icon.width() * icon.height());
    }
    EXPECT_FALSE(samePlace(pane.window.contentOf(pane.view.cells[0].texture->view.get()),
                           pane.window.contentOf(pane.view.cells[3].texture->view.get())));
}

TEST_F(IconViewTest, ACellWithoutAnIdListStartsNoLoadAndHasALabelOnly) {
    pane.show({});
    pane.frame();
    const Picture empty = pane.picture();
    pane.show({pane.named(L"nowhere")});
    ASSERT_TRUE(pane.settle());
    EXPECT_EQ(pane.view.iconTexturesMade(), 0U);
    EXPECT_FALSE(pane.view.cells[0].texture);
    EXPECT_FALSE(samePlace(pane.picture(), empty));
}

TEST_F(IconViewTest, AnIdListOfNothingReadableLeavesTheCellWithoutAnIcon) {
    FileEntry entry = pane.named(L"broken");
    const std::uint8_t junk[] = {6, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0};
    entry.pidl = *ItemIdList::fromBytes(junk);
    pane.show({entry});
    pane.view.stopIconWorker();
    pane.frame();
    EXPECT_EQ(pane.view.cells.size(), 1U);
    EXPECT_LE(pane.view.iconTexturesMade(), 1U);
}

TEST_F(IconViewTest, AnIndexOutOfRangeIsSkipped) {
    pane.show({pane.named(L"one")});
    pane.view.loadIcon(-1);
    pane.view.loadIcon(1);
    pane.view.loadIcon(1000000);
    pane.frame();
    EXPECT_EQ(pane.view.iconTexturesMade(), 0U);
}

TEST_F(IconViewTest, AThousandFilesOfTwentyTypesShareTheirTextures) {
    pane.show(filesOfTypes(1000, 20));
    ASSERT_TRUE(pane.settle());
    EXPECT_EQ(pane.loaded(), 1000);
    EXPECT_LE(pane.view.iconTexturesMade(), 20U);
    std::set<const IconTexture*> distinct;
    for (const IconCell& cell : pane.view.cells) distinct.insert(cell.texture.get());
    EXPECT_EQ(distinct.size(), pane.view.iconTexturesMade());
}

TEST_F(IconViewTest, NewContentHitsTheCache) {
    std::vector<FileEntry> entries = filesOfTypes(20, 3);
    pane.show(entries);
    ASSERT_TRUE(pane.settle());
    const std::uint64_t made = pane.view.iconTexturesMade();
    const std::shared_ptr<IconTexture> before = pane.view.cells[0].texture;
    pane.show(std::move(entries));
    ASSERT_TRUE(pane.settle());
    EXPECT_EQ(pane.view.iconTexturesMade(), made);
    EXPECT_EQ(pane.view.cells[0].texture, before);
}

TEST_F(IconViewTest, ACellRemovedWhileItsLoadRunsDoesNoHarm) {
    const std::vector<FileEntry> entries = filesOfTypes(40, 5);
    for (int round = 0; round < 5; ++round) {
        pane.show(entries);
        for (int i = 39; i >= 1; --i) pane.view.removeEntry(entries[static_cast<std::size_t>(i)]);
        ASSERT_TRUE(pane.settle());
        ASSERT_EQ(pane.view.cells.size(), 1U);
        EXPECT_TRUE(pane.view.cells[0].texture);
    }
    pane.show(entries);
    pane.show({});
    EXPECT_TRUE(pane.settle());
}

TEST_F(IconViewTest, ATextureThatArrivesWakesTheWindow) {
    MSG message{};
    while (PeekMessageW(&message, pane.window.window.get(), 0, 0, PM_REMOVE)) {
    }
    pane.show({pane.file(folder.addFile(L"letter.txt"))});
    pane.view.stopIconWorker();
    EXPECT_TRUE(PeekMessageW(&message, pane.window.window.get(), 0x800B, 0x800B, PM_REMOVE));
    EXPECT_FALSE(pane.view.cells[0].texture) << "a texture reaches its cell in a frame only";
}

TEST_F(IconViewTest, AnArrivingTextureStartsAtScaleOne) {
    pane.show({pane.file(folder.addFile(L"letter.txt"))});
    pane.view.cells[0].scale = 1.7F;
    const double end = systemClock().steadySeconds() + 60;
    while (!pane.view.cells[0].texture && systemClock().steadySeconds() < end) {
        pane.view.update();
        Sleep(1);
    }
    ASSERT_TRUE(pane.view.cells[0].texture);
    EXPECT_EQ(pane.view.cells[0].scale, 1.0F);
}

TEST_F(IconViewTest, StoppingDoesNotWaitForLoadsThatHaveNotBegun) {
    pane.show(filesOfTypes(300, 300));
    pane.view.stopIconWorker();
    EXPECT_LT(pane.view.iconTexturesMade(), 300U);
}

TEST_F(IconViewTest, WithoutAShellThereIsNoMenuToForward) {
    ASSERT_FALSE(findShellList()) << "this test needs a desktop without a shell";
    EXPECT_FALSE(pane.view.forwardShellMenu());
}

TEST_F(IconViewTest, TheShellsListIsFoundInTheProgramManagerAndInAWorkerWindow) {
    const auto makeClass = [](const wchar_t* name) {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = DefWindowProcW;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = name;
        RegisterClassW(&windowClass);
    };
    const auto makeWindow = [](const wchar_t* name, HWND parent) {
        return CreateWindowExW(0, name, L"", parent ? WS_CHILD : WS_POPUP, 0, 0, 10, 10, parent, nullptr,
                               GetModuleHandleW(nullptr), nullptr);
    };
    for (const wchar_t* name : {L"Progman", L"WorkerW", L"SHELLDLL_DefView", L"SysListView32"})
        makeClass(name);
    const HWND manager = makeWindow(L"Progman", nullptr);
    const HWND emptyWorker = makeWindow(L"WorkerW", nullptr);
    const HWND worker = makeWindow(L"WorkerW", nullptr);
    EXPECT_FALSE(findShellList());
    const HWND list = makeWindow(L"SysListView32", makeWindow(L"SHELLDLL_DefView", worker));
    EXPECT_EQ(findShellList(), list);
    const HWND managersList = makeWindow(L"SysListView32", makeWindow(L"SHELLDLL_DefView", manager));
    EXPECT_EQ(findShellList(), managersList);
    for (const HWND window : {manager, emptyWorker, worker}) DestroyWindow(window);
    EXPECT_FALSE(findShellList());
}

TEST_F(IconViewTest, AFrameAtRestCreatesNothing) {
    std::vector<FileEntry> entries;
    for (int i = 0; i < 24; ++i) {
        const std::wstring name = L"A file of many words number " + std::to_wstring(i) + L".txt";
        entries.push_back(pane.file(folder.addFile(name), i % 2 ? L"Invoices" : L"Letters"));
    }
    pane.show(std::move(entries));
    ASSERT_TRUE(pane.settle());
    pane.view.cells[3].selected = true;
    pane.frame();

    const DrawStatistics before = pane.view.drawStatistics();
    const DeviceCalls calls(pane.window.layer.device.get());
    for (int i = 0; i < 5; ++i) pane.frame();
    EXPECT_EQ(calls.created(), 0);
    EXPECT_EQ(pane.view.drawStatistics(), before);
    // Two rows of six labels, one of them also as selected, two headers and their line.
    EXPECT_EQ(before.pictures, 16U);
}

TEST_F(IconViewTest, ScrollingBackShowsKeptPictures) {
    std::vector<FileEntry> entries;
    for (int i = 0; i < 60; ++i) entries.push_back(pane.named(L"Item " + std::to_wstring(i)));
    pane.show(std::move(entries));
    ASSERT_TRUE(pane.settle());
    for (const float y : {0.0F, 300.0F, 600.0F}) {
        pane.view.scrollY = y;
        pane.frame();
    }
    const DrawStatistics before = pane.view.drawStatistics();
    for (const float y : {600.0F, 300.5F, 0.0F}) {
        pane.view.scrollY = y;
        pane.frame();
    }
    EXPECT_EQ(pane.view.drawStatistics(), before);
}

TEST_F(IconViewTest, AResizeKeepsPicturesAndTextures) {
    pane.show({pane.file(folder.addFile(L"letter.txt")), pane.named(L"other")});
    ASSERT_TRUE(pane.settle());
    pane.frame();  // the first frame finds no blend state; later ones find that of the frame before
    const Picture before = pane.picture();
    const DrawStatistics made = pane.view.drawStatistics();
    pane.view.releaseResources();
    pane.window.layer.resize(kWidth, kHeight, pane.window);
    ASSERT_TRUE(pane.window.surface.d2dRT);
    pane.frame();
    EXPECT_EQ(pane.view.drawStatistics(), made);
    const Picture after = pane.picture();
    const auto difference = reference::greatestDifference(after, before);
    EXPECT_LE(difference.steps, 1) << difference.x << ", " << difference.y;
}

TEST_F(IconViewTest, DestroyReleasesEveryDeviceObjectOfThePane) {
    const auto references = [&] {
        pane.window.layer.device->AddRef();
        return pane.window.layer.device->Release();
    };
    pane.view.destroy();
    pane.window.layer.context->ClearState();
    const ULONG before = references();
    ViewRect rect{0, 0, kWidth, kHeight};
    pane.view.init(rect, false, 0, true);
    pane.show(filesOfTypes(10, 10));
    ASSERT_TRUE(pane.settle());
    pane.view.lasso.begin(10, 10, pane.view.cells);
    pane.frame();
    EXPECT_GT(references(), before);
    pane.view.stopIconWorker();
    pane.view.destroy();
    pane.window.layer.context->ClearState();
    EXPECT_EQ(references(), before);
}

TEST_F(IconViewTest, WithoutADirect2DTargetNothingIsDrawn) {
    pane.show({pane.named(L"unseen")});
    pane.window.surface.d2dRT.reset();
    pane.window.layer.clear();
    const Picture cleared = pane.picture();
    pane.view.update();
    pane.view.draw(false);
    EXPECT_TRUE(samePlace(pane.picture(), cleared));
}

TEST_F(IconViewTest, InitTakesSizesFromTheShellAndTheScale) {
    EXPECT_EQ(pane.view.baseIconSize, 48.0F);
    EXPECT_EQ(pane.view.cellWidth, 94.0F);
    EXPECT_EQ(pane.view.cellHeight, 110.0F);
    const IconPane doubled(kWidth, kHeight, 2);
    EXPECT_EQ(doubled.view.iconSize, 96.0F);
    EXPECT_EQ(doubled.view.cellWidth, 142.0F);
}

TEST_F(IconViewTest, OfADraggedCellTheSceneShowsNothing) {
    pane.show({pane.file(folder.addFile(L"a.txt"), L"Group"), pane.file(folder.addFile(L"b.txt"), L"Group")});
    ASSERT_TRUE(pane.settle());
    const auto drawScene = [&] {
        pane.window.surface.renderScene([&] { pane.view.draw(true); });
        return pane.window.contentOf(pane.window.surface.sceneSRV.get());
    };
    const Picture both = drawScene();
    pane.view.cells[0].dragged = true;
    pane.view.cellDragActive = true;
    const Picture one = drawScene();
    EXPECT_FALSE(samePlace(both, one));
    pane.view.cells[0].visible = false;
    EXPECT_TRUE(samePlace(drawScene(), one));
}

TEST_F(IconViewTest, TheLassoStaysInsideThePane) {
    ViewRect rect{100, 100, 200, 200};
    pane.view.setViewRect(rect, false, 0);
    pane.show({});
    pane.frame();
    const Picture without = pane.picture();
    pane.view.lasso.begin(150, 150, pane.view.cells);
    pane.view.lasso.endX = 500;
    pane.view.lasso.endY = 120;
    pane.frame();
    const Picture with = pane.picture();
    EXPECT_NE(with.at(200, 140).b, without.at(200, 140).b);
    EXPECT_EQ(with.at(320, 140).b, without.at(320, 140).b);
    EXPECT_NEAR(with.at(200, 140).b, 0.843137F * 0.25F + without.at(200, 140).b * 0.75F, 0.01F);
}

TEST_F(IconViewTest, AScaleOfWhatIsNotDrawnAsksForNoFramesAndStaysAsItIs) {
    std::vector<FileEntry> entries;
    for (int i = 0; i < 60; ++i) entries.push_back(pane.named(L"a"));
    pane.show(std::move(entries));
    ASSERT_TRUE(pane.settle());
    ASSERT_FALSE(pane.view.cells.back().visible);
    pane.settings.hoverMode = 1;
    pane.view.cells.front().scale = pane.view.cells.back().scale = 1.15F;
    EXPECT_FALSE(pane.frame());
    EXPECT_EQ(pane.view.cells.front().scale, 1.15F);
    EXPECT_EQ(pane.view.cells.back().scale, 1.15F);
}

TEST_F(IconViewTest, WithoutAWallpaperTheBackgroundStaysBlackFrameAfterFrame) {
    pane.window.surface.backgroundSRV.reset();
    pane.show({pane.named(L"letter.txt")});
    ASSERT_TRUE(pane.settle());
    pane.frame();
    const Picture drawn = pane.picture();
    // Above the label, where nothing of the pane lies: no page of pictures shows through.
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < kWidth; ++x) ASSERT_EQ(drawn.at(x, y).r, 0) << x << ", " << y;
    }
}

}  // namespace
}  // namespace varnelo
