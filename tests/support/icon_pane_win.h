#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "app/language_table.h"
#include "app/settings.h"
#include "model/file_metadata.h"
#include "model/shell_namespace_win.h"
#include "platform/com_apartment.h"
#include "support/surface_window_win.h"
#include "support/temp_folder.h"
#include "views/icon_view_win.h"

namespace varnelo {

// A folder of real files, gone at the end.
class FilesFolder {
public:
    std::wstring addFile(const std::wstring& name);
    std::wstring addFolder(const std::wstring& name);

private:
    test::TempFolder folder;
};

// The shell's list of an existing path; empty if there is none.
ItemIdList idListOf(const std::wstring& path);

// One pane on a hidden surface, with the real shell.
class IconPane {
public:
    IconPane(int width, int height, float iconScale = 1);
    IconPane(const IconPane&) = delete;
    IconPane& operator=(const IconPane&) = delete;
    ~IconPane();

    // Items without a file: a name and perhaps a group. `add` keeps the metadata.
    FileEntry named(const std::wstring& name, const std::wstring& group = {});
    FileEntry file(const std::wstring& path, const std::wstring& group = {});
    void show(std::vector<FileEntry> entries);

    // One frame: update and draw over a cleared window.
    bool frame(float seconds = 0.016F);
    // Updates until all icons have come and nothing moves, then draws a frame. False if they do not come.
    bool settle();
    reference::Picture picture() { return window.backBuffer(); }
    int loaded() const;

    ComApartment apartment{ComApartment::Kind::Single};
    SurfaceWindow window;
    WindowsShellNamespace shell;
    Settings settings;
    LanguageTable language;
    IconView view;

private:
    std::vector<std::unique_ptr<DesktopFileInfo>> items;
};

}  // namespace varnelo
