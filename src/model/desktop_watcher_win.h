#pragma once

// Watches one folder, without its subfolders, for files that come, go, change their name or are written to,
// and hands what it sees to a sink on a thread of its own.

#include <string>
#include <thread>

#include "model/folder_changes.h"
#include "platform/handles_win.h"

namespace varnelo {

class DesktopWatcher {
public:
    // Does nothing yet. The sink outlives the watcher.
    DesktopWatcher(FolderChangeSink& changeSink, std::wstring watchedFolder);
    ~DesktopWatcher();
    DesktopWatcher(const DesktopWatcher&) = delete;
    DesktopWatcher& operator=(const DesktopWatcher&) = delete;

    // False when the folder cannot be opened; then there is no thread. From its return on no change is
    // missed, so whoever lists the folder does it afterwards. Called once.
    bool start();

    // Returns when the thread has ended, which waits for no file and no change, only for the call to the sink
    // that it may be in. A second call does nothing.
    void stop();

private:
    class PendingRead;

    void run();
    bool waitFor(DWORD milliseconds) const;
    bool reopen();

    FolderChangeSink& sink;
    const std::wstring folder;
    FileHandle directory;  // of the thread, once it runs
    EventHandle stopRequested;
    EventHandle watching;  // the first read is under way
    std::thread thread;
};

}  // namespace varnelo
