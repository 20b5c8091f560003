#include "views/deferred_file_actions.h"

#include <gtest/gtest.h>

#include <string>

namespace varnelo {
namespace {

struct Recorder final : FileActions {
    void launch(const FileEntry&) override {
        done.push_back("launch");
        if (onLaunch) onLaunch();
    }
    void showItemMenu(const FileEntry&) override { done.push_back("item menu"); }
    void showShellMenu(const std::vector<ItemIdList>& items) override {
        done.push_back("shell menu of " + std::to_string(items.size()));
    }
    void copyItems(const std::vector<ItemIdList>& items, bool cut) override {
        done.push_back((cut ? "cut " : "copy ") + std::to_string(items.size()));
    }
    void pasteInto(const ItemIdList& folder) override {
        done.push_back(folder.empty() ? "paste into nothing" : "paste");
    }
    void recycle(const std::vector<FileEntry>& entries) override {
        done.push_back("recycle " + std::to_string(entries.size()));
    }

    std::vector<std::string> done;
    std::function<void()> onLaunch;
};

TEST(DeferredFileActions, NothingHappensBeforeRun) {
    Recorder real;
    DeferredFileActions actions(real);
    actions.launch(FileEntry());
    EXPECT_TRUE(real.done.empty());
    actions.run();
    EXPECT_EQ(real.done, (std::vector<std::string>{"launch"}));
    actions.run();
    EXPECT_EQ(real.done.size(), 1U) << "once";
}

TEST(DeferredFileActions, AllKindsAreDoneInOrder) {
    Recorder real;
    DeferredFileActions actions(real);
    actions.showItemMenu(FileEntry());
    actions.showShellMenu(std::vector<ItemIdList>(3));
    actions.copyItems(std::vector<ItemIdList>(2), true);
    actions.copyItems(std::vector<ItemIdList>(1), false);
    actions.pasteInto(ItemIdList());
    actions.recycle(std::vector<FileEntry>(4));
    actions.run();
    EXPECT_EQ(real.done, (std::vector<std::string>{"item menu", "shell menu of 3", "cut 2", "copy 1",
                                                   "paste into nothing", "recycle 4"}));
}

TEST(DeferredFileActions, WhatComesUpDuringAnActionIsDoneAfterIt) {
    Recorder real;
    DeferredFileActions actions(real);
    real.onLaunch = [&] { actions.pasteInto(ItemIdList()); };
    actions.launch(FileEntry());
    actions.showItemMenu(FileEntry());
    actions.run();
    EXPECT_EQ(real.done, (std::vector<std::string>{"launch", "item menu", "paste into nothing"}));
}

}  // namespace
}  // namespace varnelo
