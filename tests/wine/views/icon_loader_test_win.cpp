#include "views/icon_loader_win.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "platform/com_apartment.h"
#include "support/gate.h"
#include "support/glass_reference.h"
#include "support/shell_files_win.h"
#include "support/surface_window_win.h"

namespace varnelo {
namespace {

using IconLoaderWinTest = ShellFilesTest;

TEST_F(IconLoaderWinTest, LoadersThatWorkTogetherGetTheColoursOfEveryIcon) {
    SurfaceWindow screen(200, 200);
    ASSERT_TRUE(screen.ready);
    std::vector<ItemIdList> items;
    for (const wchar_t* name : {L"a.txt", L"b.zip", L"c.exe", L"d.html", L"e.unknown"}) {
        file(name);
        items.push_back(item(name));
    }
    directory(L"folder");
    items.push_back(item(L"folder"));

    IconLoader loader;
    ASSERT_TRUE(loader.init(screen.layer.device.get()));
    std::vector<reference::Picture> expected;
    for (const ItemIdList& one : items) {
        const std::shared_ptr<IconTexture> texture = loader.load(one);
        ASSERT_TRUE(texture);
        expected.push_back(screen.contentOf(texture->view.get()));
    }
    EXPECT_GE(loader.texturesMade(), 3u) << "icons that differ";

    for (int round = 0; round < 300 && !HasFailure(); ++round) {
        loader.setDevice(screen.layer.device.get());
        std::vector<std::shared_ptr<IconTexture>> textures(items.size());
        test::Gate allAreHere(static_cast<int>(items.size()));
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < items.size(); ++i) {
            threads.emplace_back([&, i] {
                const ComApartment own(ComApartment::Kind::Single);
                allAreHere.arriveAndWait();
                textures[i] = loader.load(items[i]);
            });
        }
        for (std::thread& thread : threads) thread.join();
        for (std::size_t i = 0; i < items.size(); ++i) {
            ASSERT_TRUE(textures[i]) << i;
            const reference::Picture seen = screen.contentOf(textures[i]->view.get());
            EXPECT_EQ(greatestDifference(seen, expected[i]).steps, 0) << "round " << round << ", item " << i;
        }
    }
    loader.release();
}

}  // namespace
}  // namespace varnelo
