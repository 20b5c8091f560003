#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "model/file_entry.h"
#include "model/shell_namespace.h"
#include "platform/clock.h"
#include "views/file_actions.h"
#include "views/frame_input.h"
#include "views/grid_state.h"
#include "views/icon_load_queue.h"
#include "views/task_pool.h"

namespace varnelo {

class LanguageTable;
class Settings;

// What a grid asks of the world. All must outlive the grid.
struct GridServices {
    const FrameInput& input;
    const Clock& clock;
    const ShellNamespace& shell;
    const Settings& settings;
    const LanguageTable& language;
    FileActions* actions;  // null: nothing is launched, copied or deleted, and no menu opens
};

// The layout, animation and input brain of one scrolling pane of icons: it computes where every cell belongs,
// eases it there, and turns mouse and key events into selection, drag, scrolling, accordion and type-ahead.
// It knows nothing of drawing. The data is that of GridState; the steps are the free functions of the grid_*
// files.
//
// All operations run on the user-interface thread or under the lock that keeps it out. Icon workers touch
// nothing here but `finishIconLoad`.
class IconGridManager : public GridState {
public:
    IconGridManager(GridServices services, TabKind kind);
    virtual ~IconGridManager();
    IconGridManager(const IconGridManager&) = delete;
    IconGridManager& operator=(const IconGridManager&) = delete;

    // Starts loading the texture of a cell: `beginIconLoad` here, `finishIconLoad` from a task of
    // `iconWorker`. Asked for every new or changed cell, also while a list is being replaced.
    virtual void loadIcon(int index) = 0;
    // Shows the menu of empty space; false if there is none.
    virtual bool forwardShellMenu() = 0;

    // Places the pane. With `snapToColumns` the width of `rect` becomes a whole number of columns; with an
    // `anchor` of 1 the right edge stays, otherwise the left one.
    void setViewRect(ViewRect& rect, bool snapToColumns, int anchor);
    // The same after a move of the splitter, with the outcome in `result`. A virtual pane is not laid out but
    // builds its window anew on the next frame.
    void setViewRect(const ViewRect& rect, bool snapToColumns, int anchor, ViewRect& result);

    // Replaces the content; every cell stands in its place at once.
    void setEntries(EntryList list, TabKind kind);
    // Replaces the content by a source that is asked for the rows in sight; the kind becomes Search.
    void setVirtualSource(std::uint64_t count, EntryProvider provider);

    // One item changed. A cell is matched by its metadata object first, by its id list second. A virtual pane
    // ignores them: its source knows better.
    void addEntry(const FileEntry& entry);  // one that is shown already is updated
    void removeEntry(const FileEntry& entry);
    void updateEntry(const FileEntry& entry);  // may move it to another group
    void renameEntry(const FileEntry& entry);  // matched by its metadata object alone; keeps its group

    void reloadIcon(const ItemIdList& id);
    void reloadAllIcons();
    void refreshGroupNames();

    // Once a frame. True if something still moves, so that another frame is needed.
    bool update();

    void onMouseDown();
    void onMouseUp();
    void onMouseMove(bool leftButtonDown);
    void onMouseWheel(float delta);
    void onDoubleClick();
    void onRightClick();
    void onKeyDown(int virtualKey);

    // The cell under the cursor, or null. Valid until the content changes.
    IconCell* hoverCell();
    void clearHover();

    IconLoadQueue::Load beginIconLoad(int index) { return loads.begin(index); }
    // Any thread; once for each `beginIconLoad`, with null if there is no picture. The texture reaches its
    // cell in the next `update`; the caller wakes the frame loop.
    void finishIconLoad(const IconLoadQueue::Load& load, std::shared_ptr<IconTexture> texture) {
        loads.finish(load, std::move(texture));
    }
    // What the loads begun so far bring is dropped.
    void dropOpenLoads() { loads.dropOpenLoads(); }
    // Finishes what is queued and joins the workers. Called by the destructor of a derived class, before the
    // members that its load tasks use are gone.
    void stopIconWorker() { iconWorker.stop(); }

    // The grid that last took a press inside its rectangle, or null. It alone handles keys.
    static IconGridManager* activeGrid;

protected:
    const GridServices services;

private:
    static constexpr std::size_t kIconWorkers = 7;

    bool cursorInside() const { return viewRect.contains(services.input.cursorX, services.input.cursorY); }
    void readCursor();
    void placePane(ViewRect& rect, bool snapToColumns, int anchor);
    void takeIconScale();
    bool updateFlat();
    void refreshWindow();

    void resetContent();
    void chooseMode();
    void orderCells();
    void orderGroups();
    void contentChanged();
    int findCell(const FileEntry& entry) const;
    bool isShown(const FileEntry& entry) const;

    void pressListHeader();
    void selectAtPress();
    void dropCells();
    void clickAtRelease();

    void typeAhead(int letter);  // upper case
    void copySelected(bool cut);
    void pasteIntoFolder();
    void recycleSelected();

    std::vector<ItemIdList> selectedIds() const;
    void deselectAll();
    void selectOnly(int index);
    void toggleSelected(int index);
    void setSelected(int index, bool selected);

    IconLoadQueue loads;

protected:
    TaskPool iconWorker{kIconWorkers};  // last: its threads end before the rest is gone
};

}  // namespace varnelo
