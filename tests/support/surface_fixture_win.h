#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/surface_window_win.h"
#include "views/wallpaper_win.h"

namespace varnelo {

// The user's wallpaper for the life of the object.
class WallpaperSetting {
public:
    explicit WallpaperSetting(const std::wstring& path) : before(desktopWallpaperPath()) { set(path); }
    WallpaperSetting(const WallpaperSetting&) = delete;
    WallpaperSetting& operator=(const WallpaperSetting&) = delete;
    ~WallpaperSetting() { set(before); }

    static void set(std::wstring path) { SystemParametersInfoW(SPI_SETDESKWALLPAPER, 0, path.data(), 0); }

private:
    std::wstring before;
};

// Surfaces over picture files of their own, and words about what they log.
class SurfaceFixture : public ::testing::Test {
protected:
    void SetUp() override {
        wchar_t temp[MAX_PATH] = {};
        GetTempPathW(MAX_PATH, temp);
        folder = std::wstring(temp) + L"varnelo-surface-test\\";
        CreateDirectoryW(folder.c_str(), nullptr);
    }
    void TearDown() override {
        for (const std::wstring& file : files) DeleteFileW(file.c_str());
        RemoveDirectoryW(folder.c_str());
    }

    std::wstring file(const std::wstring& name, const std::string& bytes) {
        files.push_back(folder + name);
        const HANDLE handle =
            CreateFileW(files.back().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        CloseHandle(handle);
        return files.back();
    }

    // A 24-bit bitmap: its left half one colour, its right half another, given as blue, green, red.
    static std::string bitmap(const std::string& left, const std::string& right, int width = 40,
                              int height = 4) {
        const auto number = [](std::uint32_t value, int bytes) {
            std::string text;
            for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 255);
            return text;
        };
        std::string rows;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) rows += x < width / 2 ? left : right;
        return "BM" + number(static_cast<std::uint32_t>(54 + rows.size()), 4) + number(0, 4) + number(54, 4) +
               number(40, 4) + number(static_cast<std::uint32_t>(width), 4) +
               number(static_cast<std::uint32_t>(height), 4) + number(1, 2) + number(24, 2) +
               std::string(24, '\0') + rows;
    }
    static std::string red() { return std::string("\0\0\xff", 3); }
    static std::string green() { return std::string("\0\xff\0", 3); }
    static std::string blue() { return std::string("\xff\0\0", 3); }

    static reference::Picture frameOf(SurfaceWindow& window) {
        window.layer.clear();
        window.surface.drawBackground();
        return window.backBuffer();
    }

    static bool contains(const std::vector<std::wstring>& lines, const std::wstring& part) {
        for (const std::wstring& line : lines)
            if (line.find(part) != std::wstring::npos) return true;
        return false;
    }

    // The lines from their beginning on, in order, one for one.
    static void expectLines(const std::vector<std::wstring>& lines,
                            const std::vector<std::wstring>& beginnings) {
        ASSERT_EQ(lines.size(), beginnings.size());
        for (std::size_t i = 0; i < lines.size(); ++i)
            EXPECT_EQ(lines[i].substr(0, beginnings[i].size()), beginnings[i]) << "line " << i;
    }

    std::wstring folder;
    std::vector<std::wstring> files;
};

}  // namespace varnelo
