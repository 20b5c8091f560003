#include "views/main_view_win.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "platform/known_folders.h"
#include "support/gate.h"
#include "support/main_view_stage_win.h"
#include "support/real_desktop_win.h"

namespace varnelo {
namespace {

class MainViewTest : public RealDesktopTest {
protected:
    MainViewTest() {
        EXPECT_TRUE(stage.window.ready);
        for (int i = 0; i < 3; ++i) writeFile(pathOf(L"00 file " + std::to_wstring(i) + L".txt"));
    }
    MainView& view() { return *stage.view; }

    // The only drive, with one file, and no cache of an earlier run.
    test::ScriptedVolume& givenVolume(const std::wstring& name) {
        DeleteFileW(cacheFile().c_str());
        test::ScriptedVolume& volume = stage.volumes[L'C'];
        volume = {};
        volume.add({24, 5, name}, test::MftRecordBytes().residentData(7));
        return volume;
    }
    static std::wstring cacheFile() { return machineDataPath(IndexService::kFolder, IndexService::kFile); }
    bool indexed(const std::wstring& name) {
        NTFSIndex& index = stage.shared->index;
        const std::lock_guard lock(index.mutex);
        return index.searchNames(name).size() == 1;
    }

    const ViewLayout& places() { return view().layout(); }

    // Pulls the splitter's bar to `x`.
    void dragBarTo(float x) {
        const ViewRect& bar = view().splitterBar().barRect();
        stage.drag(std::min(bar.x + 2, 1279.0F), 300, x, 300);
    }
    // Whole columns that the software pane's width holds.
    int softwareColumns() {
        const IconView& pane = view().softwarePane();
        return static_cast<int>(std::round((pane.viewRect.w - pane.marginX) / pane.cellWidth));
    }
    // The pane shows whole columns and ends at the window's right edge.
    void expectSnapped() {
        const IconView& pane = view().softwarePane();
        EXPECT_FLOAT_EQ(pane.viewRect.w,
                        static_cast<float>(softwareColumns()) * pane.cellWidth + pane.marginX);
        EXPECT_FLOAT_EQ(pane.viewRect.right(), 1280);
        EXPECT_NEAR(view().splitterBar().barRect().right(), pane.viewRect.x, 2.01F);
    }

    MainViewStage stage{1280, 800};
};

TEST_F(MainViewTest, AFirstStartShowsTheDesktopTab) {
    stage.start();
    EXPECT_EQ(view().activeTab(), MainView::DesktopTab);
    EXPECT_EQ(view().tabPane().tabKind, TabKind::Desktop);
    EXPECT_GE(view().tabPane().cells.size(), 3u);
    EXPECT_EQ(view().softwarePane().tabKind, TabKind::Software);
    EXPECT_FALSE(view().softwarePane().selectable);
    EXPECT_TRUE(view().tabPane().selectable);
    expectSnapped();
}

TEST_F(MainViewTest, ASavedTabThatDoesNotExistLeavesThePaneEmptyUntilAClick) {
    stage.settings.setTabIndexFor(0, 7);
    stage.start();
    EXPECT_EQ(view().activeTab(), 0);
    EXPECT_TRUE(view().tabPane().cells.empty());
    stage.clickTab(MainView::DesktopTab);
    EXPECT_GE(view().tabPane().cells.size(), 3u);
}

TEST_F(MainViewTest, ASavedNegativeTabLeavesThePaneEmptyToo) {
    stage.settings.setTabIndexFor(0, -2);
    stage.start();
    EXPECT_EQ(view().activeTab(), 0);
    EXPECT_TRUE(view().tabPane().cells.empty());
}

TEST_F(MainViewTest, AClickOnATabShowsItAndIsRemembered) {
    stage.start();
    const TabKind kinds[] = {TabKind::Desktop, TabKind::Overview, TabKind::System, TabKind::Search};
    for (const std::int32_t tab : {2, 1, 3, 0}) {
        stage.clickTab(tab);
        EXPECT_EQ(view().activeTab(), tab);
        EXPECT_EQ(view().tabPane().tabKind, kinds[tab]);
        EXPECT_EQ(stage.settings.tabIndexFor(0), tab);
        EXPECT_EQ(stage.settings.tabIndex, tab);
    }
    stage.clickTab(MainView::SystemTab);
    stage.restart();
    EXPECT_EQ(view().activeTab(), MainView::SystemTab);
    EXPECT_TRUE(view().tabPane().cells.empty());
}

TEST_F(MainViewTest, AClickIsAPressAndAReleaseOnTheSameTab) {
    stage.start();
    const auto middle = [&](std::size_t tab) {
        const ViewRect& rect = view().tabs().tabs[tab].rect;
        return rect.x + rect.w / 2;
    };
    stage.press(middle(2), 20);
    stage.release(middle(1), 20);
    EXPECT_EQ(view().activeTab(), MainView::DesktopTab);
    stage.press(600, 500);
    stage.release(middle(1), 20);
    EXPECT_EQ(view().activeTab(), MainView::DesktopTab);
}

TEST_F(MainViewTest, TheTabUnderTheCursorIsHot) {
    stage.start();
    const ViewRect& rect = view().tabs().tabs[2].rect;
    stage.moveTo(rect.x + 5, 20);
    EXPECT_EQ(view().tabs().hoverIndex, 2);
    stage.moveTo(rect.x + 5, 200);
    EXPECT_EQ(view().tabs().hoverIndex, -1);
}

TEST_F(MainViewTest, ChangesOfTheDesktopWaitForItsTab) {
    stage.start();
    const std::size_t before = view().tabPane().cells.size();
    stage.clickTab(MainView::SystemTab);
    writeFile(pathOf(L"00 new.txt"));
    EXPECT_TRUE(becomesTrue([&] {
        stage.frame();
        return view().tabPane().cells.empty();
    }));
    EXPECT_TRUE(becomesTrue([&] {
        stage.frame();
        EXPECT_TRUE(view().tabPane().tabKind != TabKind::System || view().tabPane().cells.empty());
        stage.clickTab(MainView::DesktopTab);
        const bool shown = view().tabPane().cells.size() == before + 1;
        if (!shown) stage.clickTab(MainView::SystemTab);
        return shown;
    }));
}

TEST_F(MainViewTest, AFileThatAppearsIsShown) {
    stage.start();
    const std::size_t before = view().tabPane().cells.size();
    writeFile(pathOf(L"00 new.txt"));
    EXPECT_TRUE(becomesTrue([&] {
        stage.frame();
        return view().tabPane().cells.size() == before + 1;
    }));
}

TEST_F(MainViewTest, TheSearchTabShowsThePanelAndTakesWhatIsTyped) {
    stage.start();
    EXPECT_EQ(view().tabPane().viewRect.y, 40);
    stage.clickTab(MainView::SearchTab);
    EXPECT_EQ(view().tabPane().viewRect.y, 116);
    EXPECT_EQ(view().tabPane().layoutMode, LayoutMode::List);
    stage.frame();
    EXPECT_FALSE(view().caretBlinks());
    stage.click(300, 65);
    EXPECT_TRUE(view().caretBlinks());
    stage.type(L"plan");
    EXPECT_EQ(view().search().nameField.text(), L"plan");
    view().onKeyDown(36);
    view().onKeyDown(46);
    EXPECT_EQ(view().search().nameField.text(), L"lan");
}

TEST_F(MainViewTest, LeavingTheSearchTabHidesThePanelAndTakesItsFocus) {
    stage.start();
    stage.clickTab(MainView::SearchTab);
    stage.frame();
    stage.click(300, 65);
    stage.clickTab(MainView::DesktopTab);
    EXPECT_EQ(view().tabPane().viewRect.y, 40);
    EXPECT_FALSE(view().caretBlinks());
    EXPECT_FALSE(view().search().hasFocus());
    EXPECT_EQ(view().tabPane().layoutMode, LayoutMode::Grouped);
    stage.type(L"x");
    EXPECT_EQ(view().search().nameField.text(), L"");
}

TEST_F(MainViewTest, TheSecondSearchRowPushesThePaneDown) {
    stage.start();
    stage.clickTab(MainView::SearchTab);
    stage.frame();
    stage.click(300, 95);
    EXPECT_TRUE(stage.settle());
    EXPECT_EQ(view().tabPane().viewRect.y, 156);
    stage.click(300, 120);
    stage.type(L"text");
    EXPECT_EQ(view().search().contentField.text(), L"text");
    EXPECT_TRUE(view().caretBlinks());
    stage.click(300, 95);
    EXPECT_TRUE(stage.settle());
    EXPECT_EQ(view().tabPane().viewRect.y, 116);
    EXPECT_FALSE(view().caretBlinks());
}

TEST_F(MainViewTest, AFieldWithTheFocusTakesTheKeysFromThePanes) {
    stage.start();
    stage.click(600, 600);
    EXPECT_EQ(IconGridManager::activeGrid, &view().tabPane());
    stage.clickTab(MainView::SearchTab);
    stage.frame();
    stage.click(300, 65);
    EXPECT_EQ(IconGridManager::activeGrid, nullptr);
}

TEST_F(MainViewTest, TheMenuButtonOpensAndClosesTheMenuWithFourRows) {
    stage.start();
    EXPECT_FALSE(view().menu().panelShows());
    stage.clickMenuButton();
    EXPECT_TRUE(view().menu().panelShows());
    ASSERT_EQ(view().menu().items.size(), 4u);
    EXPECT_EQ(view().menu().items[0].label, L"Settings");
    EXPECT_EQ(view().menu().items[3].label, L"Exit");
    EXPECT_GT(view().menu().panelWidth, MenuBar::kPanelMargin);
    stage.clickMenuButton();
    EXPECT_FALSE(view().menu().panelShows());
}

TEST_F(MainViewTest, ARowOfTheMenuRunsItsCommandAndClosesTheMenu) {
    stage.start();
    std::vector<int> run;
    view().menuCommands = {[&] { run.push_back(0); }, [&] { run.push_back(1); }, [&] { run.push_back(2); }};
    for (const int row : {0, 1, 2}) {
        stage.clickMenuButton();
        stage.clickMenuRow(static_cast<std::size_t>(row));
        EXPECT_FALSE(view().menu().open);
    }
    EXPECT_EQ(run, (std::vector<int>{0, 1, 2}));
}

TEST_F(MainViewTest, ARowWithoutACommandOnlyClosesTheMenu) {
    stage.start();
    stage.clickMenuButton();
    stage.clickMenuRow(0);
    EXPECT_FALSE(view().menu().open);
    EXPECT_TRUE(IsWindow(stage.window.window.get()));
}

TEST_F(MainViewTest, ExitClosesTheViewsOwnWindow) {
    stage.start();
    const HWND window = stage.window.window.get();
    stage.clickMenuButton();
    stage.clickMenuRow(3);
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(MainViewTest, TheOpenMenuTakesTheClickThatClosesIt) {
    stage.start();
    stage.settle();
    const IconCell& cell = view().tabPane().cells.front();
    const float x = cell.x + 40;
    const float y = cell.y + 20;
    stage.click(x, y);
    ASSERT_TRUE(view().tabPane().cells.front().selected);
    stage.clickMenuButton();
    stage.click(600, 700);
    EXPECT_FALSE(view().menu().open);
    EXPECT_TRUE(view().tabPane().cells.front().selected) << "the click reached the pane below";
}

TEST_F(MainViewTest, TheRowUnderTheCursorIsHotAndNothingBelowItIs) {
    stage.start();
    stage.settle();
    stage.clickMenuButton();
    const ViewRect row = view().menu().rowRect(2);
    stage.moveTo(row.x + 5, row.y + 5);
    EXPECT_EQ(view().menu().hotRow, 2);
    EXPECT_EQ(view().tabPane().hoverIndex, -1);
    view().onMouseWheel(-120);
    EXPECT_EQ(view().tabPane().scrollVelocity, 0);
}

TEST_F(MainViewTest, ThePulledBarComesToRestAtAColumnAndIsRemembered) {
    stage.start();
    dragBarTo(700);
    expectSnapped();
    EXPECT_EQ(softwareColumns(), 6);  // 580 pixels beside the bar hold six of 94
    EXPECT_FLOAT_EQ(stage.settings.splitterRatioFor(0), view().splitterBar().ratio());
    EXPECT_FLOAT_EQ(view().tabPane().viewRect.w, view().splitterBar().barRect().x);
}

TEST_F(MainViewTest, WhileTheBarIsPulledThePanesFollow) {
    stage.start();
    stage.press(view().splitterBar().barRect().x + 2, 300);
    stage.moveTo(1000, 300);
    EXPECT_TRUE(view().splitterBar().isDragging());
    EXPECT_FLOAT_EQ(view().tabPane().viewRect.w, 998);
    stage.moveTo(900, 300);
    EXPECT_FLOAT_EQ(view().tabPane().viewRect.w, 898);
    stage.release(900, 300);
    EXPECT_FALSE(view().splitterBar().isDragging());
}

TEST_F(MainViewTest, ABarWhoseReleaseWentElsewhereIsLeftWhereItIs) {
    stage.start();
    stage.press(view().splitterBar().barRect().x + 2, 300);
    stage.moveTo(900, 300);
    stage.window.surface.input.cursorX = 500;
    view().onMouseMove(false);
    EXPECT_FALSE(view().splitterBar().isDragging());
    expectSnapped();
    EXPECT_EQ(softwareColumns(), 3);  // 380 pixels at the last move with the button down
    EXPECT_FLOAT_EQ(stage.settings.splitterRatioFor(0), view().splitterBar().ratio());
}

TEST_F(MainViewTest, PulledToTheEdgeTheSoftwarePaneFoldsAwayAndComesBack) {
    stage.start();
    dragBarTo(1000);
    const float before = view().splitterBar().ratio();
    dragBarTo(1256);
    EXPECT_TRUE(view().splitterBar().softwareHidden());
    EXPECT_TRUE(stage.settle());
    EXPECT_EQ(view().splitterBar().ratio(), 1);
    EXPECT_FLOAT_EQ(view().tabPane().viewRect.w, 1278);
    EXPECT_EQ(stage.settings.splitterRatioFor(0), 1);
    EXPECT_LT(view().splitterBar().restoreRatio(), Splitter::kHideThreshold);
    stage.drag(1272, 300, 1000, 300);
    EXPECT_FALSE(view().splitterBar().softwareHidden());
    EXPECT_FLOAT_EQ(view().splitterBar().ratio(), before);
    expectSnapped();
}

TEST_F(MainViewTest, AStartWithTheSoftwarePaneFoldedAwayCanUnfoldIt) {
    stage.settings.setSplitterRatioFor(0, 1);
    stage.start();
    EXPECT_TRUE(view().splitterBar().softwareHidden());
    stage.settle();
    dragBarTo(900);
    EXPECT_FALSE(view().splitterBar().softwareHidden());
    expectSnapped();
    EXPECT_TRUE(stage.settle());
}

TEST_F(MainViewTest, RestartsDoNotMoveTheBar) {
    stage.start();
    dragBarTo(800);
    const int columns = softwareColumns();
    for (int i = 0; i < 5; ++i) stage.restart();
    EXPECT_EQ(softwareColumns(), columns);
    expectSnapped();
}

TEST_F(MainViewTest, AHundredResizesAndBackLeaveEverythingInItsPlace) {
    stage.start();
    stage.settle();
    const ViewLayout before = places();
    const int columns = softwareColumns();
    for (int i = 0; i < 100; ++i) stage.resizeTo(800 + i * 7 % 500, 500 + i * 13 % 300);
    stage.resizeTo(1280, 800);
    EXPECT_EQ(softwareColumns(), columns);
    EXPECT_EQ(places().tabPane, before.tabPane);
    EXPECT_EQ(places().progressBar, before.progressBar);
    expectSnapped();
}

TEST_F(MainViewTest, AnotherIconScaleCutsTheSoftwarePaneAnew) {
    stage.start();
    stage.settings.iconScale = 1.5F;
    stage.frame();
    EXPECT_FLOAT_EQ(view().softwarePane().cellWidth, 118);
    expectSnapped();
}

TEST_F(MainViewTest, AChangeOfLanguageRelabelsEverything) {
    writeFile(pathOf(L"00 umbrella.txt"));  // in no family
    stage.start();
    const float width = view().menu().panelWidth;
    stage.language.loadLanguage(GetModuleHandleW(nullptr), Language::German);
    view().onLanguageChanged();
    EXPECT_EQ(view().menu().items[0].label, L"Einstellungen");
    EXPECT_EQ(view().menu().items[3].label, L"Beenden");
    EXPECT_EQ(view().tabs().tabs[2].label, stage.language.translate(L"SYSTEM"));
    EXPECT_EQ(view().search().nameField.placeholder, L"Dateinamen suchen...");
    EXPECT_NE(view().menu().panelWidth, width);
    bool found = false;
    for (const IconGroup& group : view().tabPane().groups)
        found |= group.name == stage.language.translate(L"LAST_7_DAYS");
    EXPECT_TRUE(found);
}

TEST_F(MainViewTest, ATaskShowsItsProgressAndAFrameIsNeededUntilItHasGlided) {
    stage.start();
    stage.settle();
    test::Gate running(1);
    test::Gate mayEnd(1);
    view().tasks().enqueue(L"working", [&] {
        running.countDown();
        mayEnd.wait();
    });
    running.wait();
    EXPECT_TRUE(stage.frame(0.1F)) << "the index is one of two tasks, and done";
    EXPECT_TRUE(stage.settle());
    const auto withBar = stage.picture();
    mayEnd.countDown();
    EXPECT_TRUE(becomesTrue([&] { return stage.frame(0.1F); }));
    EXPECT_TRUE(stage.settle());
    const auto without = stage.picture();
    const auto redInTheBar = [](const reference::Picture& picture) { return picture.at(20, 775).r; };
    EXPECT_NE(redInTheBar(withBar), redInTheBar(without))
        << "the bar shows while the task runs, and not after";
}

TEST_F(MainViewTest, TheEndWaitsForTasksThatAreQueued) {
    stage.start();
    std::atomic<int> done{0};
    for (int i = 0; i < 20; ++i) view().tasks().enqueue(L"task", [&] { ++done; });
    stage.stop();
    EXPECT_EQ(done, 20);
}

TEST_F(MainViewTest, ThePrimaryViewPublishesItsModelsWhileItLives) {
    stage.start();
    SharedViews& shared = *stage.shared;
    EXPECT_NE(shared.organizers, nullptr);
    EXPECT_EQ(shared.indexReady.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    view().shutdown();
    EXPECT_EQ(shared.organizers, nullptr);
}

TEST_F(MainViewTest, TheIndexTaskLetsTheSearchFieldsBeUsed) {
    test::Gate mayEnd(1);
    givenVolume(L"quarterly.txt").enumerate = [&](auto, auto) {
        mayEnd.wait();
        return Volume::Answer{};
    };
    stage.begin();
    EXPECT_TRUE(stage.loading()) << "the progress bar shows";
    stage.clickTab(MainView::SearchTab);
    stage.frame();
    stage.click(300, 65);
    EXPECT_FALSE(view().search().hasFocus()) << "there is nothing to search in yet";
    mayEnd.countDown();
    EXPECT_TRUE(becomesTrue([&] {
        stage.frame();
        stage.click(300, 65);
        return view().search().hasFocus();
    }));
}

TEST_F(MainViewTest, TheVolumesAreScannedOnceAndThenComeFromTheCache) {
    givenVolume(L"quarterly.txt");
    stage.start();
    EXPECT_TRUE(becomesTrue([&] { return indexed(L"quarterly.txt"); }));
    stage.stop();
    stage.volumes[L'C'].opens = false;
    stage.start();
    EXPECT_TRUE(becomesTrue([&] { return indexed(L"quarterly.txt"); }));
    EXPECT_TRUE(stage.elevation.runs.empty());
}

TEST_F(MainViewTest, ARebuildScansTheVolumesAnew) {
    givenVolume(L"quarterly.txt");
    stage.start();
    ASSERT_TRUE(becomesTrue([&] { return indexed(L"quarterly.txt"); }));
    givenVolume(L"yearly.txt");
    view().rebuildNTFSIndex();
    EXPECT_TRUE(becomesTrue([&] { return indexed(L"yearly.txt"); }));
    EXPECT_FALSE(indexed(L"quarterly.txt"));
}

TEST_F(MainViewTest, WithoutRightsTheHelperIsAskedForOnATaskAndTheViewGoesOn) {
    givenVolume(L"quarterly.txt").opens = false;
    stage.elevation.admin = true;
    stage.start();
    EXPECT_EQ(stage.elevation.runs, (std::vector<std::wstring>{L"--ntfs-scan 120000"}));
}

TEST_F(MainViewTest, TheEndDoesNotWaitForAScan) {
    test::Gate scanning(1);
    std::atomic<int> calls{0};
    test::ScriptedVolume& volume = givenVolume(L"quarterly.txt");
    volume.enumerate = [&](auto, std::span<std::uint8_t> answer) {
        if (++calls == 1) scanning.countDown();
        // A table without end, page by page.
        const test::Bytes page =
            test::usnAnswer(1000U + static_cast<std::uint64_t>(calls), {test::usnRecord({100, 5, L"a"})});
        std::copy(page.begin(), page.end(), answer.begin());
        return Volume::Answer{page.size()};
    };
    stage.begin();
    scanning.wait();
    const double begin = systemClock().steadySeconds();
    stage.stop();
    EXPECT_LT(systemClock().steadySeconds() - begin, 10);
    EXPECT_EQ(GetFileAttributesW(cacheFile().c_str()), INVALID_FILE_ATTRIBUTES) << "half a scan is not kept";
}

TEST_F(MainViewTest, AnotherMonitorsViewWaitsForThePrimarysIndex) {
    stage.start(1);
    ASSERT_EQ(view().menu().items.size(), 4u);
    EXPECT_EQ(stage.shared->organizers, nullptr) << "only the primary view publishes";
    stage.clickTab(MainView::SearchTab);
    stage.frame();
    stage.click(300, 65);
    EXPECT_FALSE(view().search().hasFocus());
    stage.shared->indexPromise.set_value();
    EXPECT_TRUE(becomesTrue([&] {
        stage.frame();
        stage.click(300, 65);
        return view().search().hasFocus();
    }));
}

TEST_F(MainViewTest, AnotherMonitorsViewKeepsItsOwnTabAndEndsWhileItWaits) {
    stage.start(1);
    stage.clickTab(MainView::SystemTab);
    EXPECT_EQ(stage.settings.tabIndexFor(1), MainView::SystemTab);
    EXPECT_EQ(stage.settings.tabIndex, 0);
    EXPECT_EQ(stage.settings.tabIndexFor(0), 0);
    const double begin = systemClock().steadySeconds();
    stage.stop();
    EXPECT_LT(systemClock().steadySeconds() - begin, 10);
}

TEST_F(MainViewTest, AViewThatIsDestroyedWithoutItsEndDoesNotWaitForAnIndex) {
    stage.start(1);
    const double begin = systemClock().steadySeconds();
    stage.view.reset();
    EXPECT_LT(systemClock().steadySeconds() - begin, 10);
}

TEST_F(MainViewTest, TheDraggedOrderIsSavedWithTheNextFrame) {
    stage.start();
    stage.settle();
    const auto cache = appDataPath(L"Varnelo", L"desktop.cache");
    DeleteFileW(cache.c_str());
    stage.frame();
    EXPECT_EQ(GetFileAttributesW(cache.c_str()), INVALID_FILE_ATTRIBUTES);
    std::size_t group = 0;
    while (view().tabPane().groups[group].cells.size() < 2) ++group;
    const IconGroup& files = view().tabPane().groups[group];
    const IconCell first = view().tabPane().cells[static_cast<std::size_t>(files.cells[0])];
    const IconCell second = view().tabPane().cells[static_cast<std::size_t>(files.cells[1])];
    stage.drag(first.x + 47, first.y + 24, second.x + 50, second.y + 24);
    stage.frame();
    EXPECT_NE(GetFileAttributesW(cache.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(MainViewTest, AnotherDeviceShowsTheSamePicture) {
    stage.start();
    stage.clickTab(MainView::SearchTab);
    stage.frame();
    stage.click(300, 65);
    stage.type(L"plan");
    stage.clickTab(MainView::DesktopTab);
    stage.clickMenuButton();
    const auto complete = [&] {
        if (stage.frame(0.1F)) return false;
        for (const IconCell& cell : view().tabPane().cells)
            if (!cell.texture && !cell.entry.pidl.empty()) return false;
        return true;
    };
    ASSERT_TRUE(becomesTrue(complete));
    const auto before = stage.picture().bgra();
    for (int i = 0; i < 3; ++i) {
        stage.exchangeDevice();
        ASSERT_TRUE(stage.window.ready);
        ASSERT_TRUE(becomesTrue(complete));
        EXPECT_EQ(stage.picture().bgra(), before);
    }
    EXPECT_EQ(view().search().nameField.text(), L"plan");
}

TEST_F(MainViewTest, ALayerTellsThatItsDeviceIsLostFromTheChosenCallOn) {
    DeviceLayer& layer = stage.window.layer;
    stage.start();
    layer.callsBeforeLoss = 1;
    layer.present();
    EXPECT_FALSE(layer.isLost());
    layer.present();
    EXPECT_TRUE(layer.isLost());
    stage.exchangeDevice();
    EXPECT_FALSE(layer.isLost());
    layer.callsBeforeLoss = 0;
    stage.resizeTo(900, 600);
    EXPECT_TRUE(layer.isLost()) << "the swap chain's buffers tell it too";
}

TEST_F(MainViewTest, AFrameAtRestMakesNothing) {
    stage.start();
    stage.clickTab(MainView::SearchTab);
    stage.settle();
    stage.clickMenuButton();
    stage.frame();
    const WidgetStatistics before = view().widgetStatistics();
    for (int i = 0; i < 5; ++i) stage.frame();
    EXPECT_EQ(view().widgetStatistics(), before);
    EXPECT_GT(before.pictures, 0u);
}

}  // namespace
}  // namespace varnelo
