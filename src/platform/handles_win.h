#pragma once

#include <windows.h>

#include <objbase.h>

#include "platform/unique_handle.h"

namespace varnelo {

// Closing a handle on the way out of a failed function must not hide why it failed.
class LastErrorKeeper {
public:
    LastErrorKeeper() = default;
    LastErrorKeeper(const LastErrorKeeper&) = delete;
    LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;
    ~LastErrorKeeper() { SetLastError(error); }

private:
    DWORD error = GetLastError();
};

// Kernel objects whose creating function answers null on failure.
struct KernelHandleTraits {
    using Raw = HANDLE;
    static Raw invalid() { return nullptr; }
    static void close(Raw handle) {
        const LastErrorKeeper keeper;
        CloseHandle(handle);
    }
};
using EventHandle = UniqueHandle<KernelHandleTraits>;
using ThreadHandle = UniqueHandle<KernelHandleTraits>;
using ProcessHandle = UniqueHandle<KernelHandleTraits>;
using MutexHandle = UniqueHandle<KernelHandleTraits>;
using SectionHandle = UniqueHandle<KernelHandleTraits>;

// CreateFileW answers INVALID_HANDLE_VALUE on failure.
struct FileHandleTraits : KernelHandleTraits {
    static Raw invalid() { return INVALID_HANDLE_VALUE; }
};
using FileHandle = UniqueHandle<FileHandleTraits>;

struct FindHandleTraits {
    using Raw = HANDLE;
    static Raw invalid() { return INVALID_HANDLE_VALUE; }
    static void close(Raw handle) {
        const LastErrorKeeper keeper;
        FindClose(handle);
    }
};
using FindHandle = UniqueHandle<FindHandleTraits>;

struct RegKeyTraits {
    using Raw = HKEY;
    static Raw invalid() { return nullptr; }
    static void close(Raw key) {
        const LastErrorKeeper keeper;
        RegCloseKey(key);
    }
};
using RegKey = UniqueHandle<RegKeyTraits>;

struct IconHandleTraits {
    using Raw = HICON;
    static Raw invalid() { return nullptr; }
    static void close(Raw icon) {
        const LastErrorKeeper keeper;
        DestroyIcon(icon);
    }
};
using IconHandle = UniqueHandle<IconHandleTraits>;

struct MenuHandleTraits {
    using Raw = HMENU;
    static Raw invalid() { return nullptr; }
    static void close(Raw menu) {
        const LastErrorKeeper keeper;
        DestroyMenu(menu);
    }
};
using MenuHandle = UniqueHandle<MenuHandleTraits>;

struct BitmapHandleTraits {
    using Raw = HBITMAP;
    static Raw invalid() { return nullptr; }
    static void close(Raw bitmap) {
        const LastErrorKeeper keeper;
        DeleteObject(bitmap);
    }
};
using BitmapHandle = UniqueHandle<BitmapHandleTraits>;

// Memory that the shell and COM hand out: strings (wchar_t), item id lists (ITEMIDLIST).
template <class T>
struct CoTaskMemoryTraits {
    using Raw = T*;
    static Raw invalid() { return nullptr; }
    static void close(Raw memory) {
        const LastErrorKeeper keeper;
        CoTaskMemFree(const_cast<void*>(static_cast<const void*>(memory)));
    }
};
template <class T>
using CoTaskMemory = UniqueHandle<CoTaskMemoryTraits<T>>;
using CoTaskString = CoTaskMemory<wchar_t>;

}  // namespace varnelo
