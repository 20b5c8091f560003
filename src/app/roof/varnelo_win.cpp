#include "app/roof/varnelo_win.h"

#include <chrono>
#include <cwchar>
#include <iterator>
#include <optional>

#include "app/crash_guard.h"
#include "app/language_table.h"
#include "app/logger.h"
#include "app/settings.h"
#include "desktop/shell_watcher_win.h"
#include "desktop/window_procedure_win.h"
#include "model/file_probe_win.h"
#include "model/shell_namespace_win.h"
#include "platform/clock.h"
#include "resource_ids.h"

namespace varnelo {

namespace {

// Everything that can stand in the queue, pointer and touch input included.
constexpr DWORD kAnyInput = 0x1CFF;

// How long the loop sleeps while a caret blinks: half of the time between its changes.
constexpr DWORD kCaretMilliseconds = 265;

std::int64_t steadyNanoseconds() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::wstring loadString(HINSTANCE instance, UINT id) {
    constexpr int kUnits = 100;
    wchar_t text[kUnits];
    const int length = LoadStringW(instance, id, text, kUnits);
    return std::wstring(text, static_cast<std::size_t>(length));
}

// Tests of the whole program choose with such a number.
std::optional<int> environmentNumber(const wchar_t* name) {
    wchar_t text[12];
    const DWORD length = GetEnvironmentVariableW(name, text, static_cast<DWORD>(std::size(text)));
    if (length == 0 || length >= std::size(text)) return std::nullopt;
    return static_cast<int>(std::wcstol(text, nullptr, 10));
}

}  // namespace

Varnelo& Varnelo::instance() {
    static Varnelo application;
    return application;
}

int Varnelo::run(HINSTANCE instance, bool windowed) {
    instanceHandle = instance;
    window.windowed = windowed;
    title = loadString(instance, IDS_TITLE);
    windowClassName = loadString(instance, IDS_WINDOW_CLASS);

    startLogger();
    Settings::instance().load();
    logInfo(L"Settings loaded");
    loadLanguage();
    window.monitors.refresh();
    registerWindowClass();
    if (!createWindow()) {
        logFatal(L"Failed to create window");
        return 0;
    }
    logInfo(L"Window created and shown");
    frameClock.start(steadyNanoseconds());

    logInfo(L"Message loop starting");
    window.routedMainWindow = window.mainWindow;
    window.routedMainRender = render.get();
    const WPARAM exitCode = messageLoop();
    logInfo(L"Message loop ended");
    cleanup();
    logInfo(L"Varnelo shut down");
    Logger::instance().shutdown();
    return static_cast<int>(exitCode);
}

Varnelo::Varnelo()
    : services{shellNamespace, fileProbe,  systemClock(), Settings::instance(), LanguageTable::instance(),
               volumeSource,   elevatedRun} {
    window.endSession = [this] { endSession(); };
}

Varnelo::~Varnelo() = default;

void Varnelo::startLogger() {
    Logger::instance().initialise(title);
    logInfo(L"Logger initialized");
    logInfo(window.windowed ? L"Varnelo starting up (Windowed mode)" : L"Varnelo starting up (Desktop mode)");
    mainThreadId = GetCurrentThreadId();
    Logger::instance().onCrash = [] { Varnelo::instance().crashCleanup(); };
}

void Varnelo::loadLanguage() {
    LanguageTable& table = LanguageTable::instance();
    const Language language = chooseLanguage(Settings::instance(), table.systemLanguage);
    table.loadLanguage(instanceHandle, language);
    logInfo(L"Language initialized");
}

void Varnelo::registerWindowClass() {
    attachWindowProcedure(&window);
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.style = CS_DBLCLKS;
    description.lpfnWndProc = WndProc;
    description.hInstance = instanceHandle;
    description.hIcon = LoadIconW(instanceHandle, MAKEINTRESOURCEW(IDI_APPLICATION_ICON));
    description.hIconSm = static_cast<HICON>(
        LoadImageW(instanceHandle, MAKEINTRESOURCEW(IDI_APPLICATION_ICON), IMAGE_ICON,
                   GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.lpszClassName = windowClassName.c_str();
    RegisterClassExW(&description);
    logInfo(L"Window class registered");
}

bool Varnelo::createWindow() {
    if (!window.windowed) return false;  // there is no other place for the window yet
    const MonitorInfo* primary = window.monitors.primaryMonitor();
    const RECT area = primary ? primary->workRect : RECT{0, 0, 1280, 800};
    window.mainWindow = CreateWindowExW(0, windowClassName.c_str(), title.c_str(), WS_OVERLAPPEDWINDOW,
                                        area.left, area.top, area.right - area.left, area.bottom - area.top,
                                        nullptr, nullptr, instanceHandle, nullptr);
    if (!window.mainWindow) return false;
    ShowWindow(window.mainWindow, SW_MAXIMIZE);
    UpdateWindow(window.mainWindow);
    AddClipboardFormatListener(window.mainWindow);
    shellNotifyId = startShellWatcher(window.mainWindow);

    RECT client{};
    GetClientRect(window.mainWindow, &client);
    initRender(static_cast<UINT>(client.right), static_cast<UINT>(client.bottom));
    return true;
}

void Varnelo::initRender(UINT width, UINT height) {
    render = std::make_unique<Render>(services, ViewRole{sharedViews});
    ComRef<IDXGISurface> backBuffer;
    if (!device.initD3D(window.mainWindow, width, height, backBuffer)) return;
    render->init(title, window.mainWindow, instanceHandle, device, backBuffer.get(), width, height);
    device.callsBeforeLoss = environmentNumber(L"VARNELO_LOSE_DEVICE_AT").value_or(-1);
    logInfo(L"Render system initialized");
    window.width = width;
    window.height = height;
    window.resizePending = false;
}

WPARAM Varnelo::messageLoop() {
    MSG message{};
    while (message.message != WM_QUIT) {
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        } else if (window.redrawRequested) {
            drawFrame();
        } else {
            // Every wake-up, by whatever message or for the caret, costs exactly one frame.
            const DWORD limit = render->mainView.caretBlinks() ? kCaretMilliseconds : INFINITE;
            MsgWaitForMultipleObjects(0, nullptr, FALSE, limit, kAnyInput);
            window.redrawRequested = true;
        }
    }
    return message.wParam;
}

void Varnelo::drawFrame() {
    window.redrawRequested = false;
    device.awaitPresented();
    const bool animating = render->update(frameClock.advance(steadyNanoseconds()));
    if (window.resizePending) {
        device.resize(window.width, window.height, *render);
        window.resizePending = false;
    }
    device.clear();
    render->draw();
    device.present();
    if (animating) window.redrawRequested = true;
    if (device.isLost()) recoverDevice();
}

// The only place that handles the loss of the device. What is shown comes back from what the processor holds;
// when there is no new device the window stays undrawn.
void Varnelo::recoverDevice() {
    logWarn(L"Direct3D device lost, making it anew");
    render->releaseDevice();
    device.shutdown();
    ComRef<IDXGISurface> backBuffer;
    if (!device.initD3D(window.mainWindow, window.width, window.height, backBuffer)) return;
    render->restoreDevice(device, backBuffer.get(), window.width, window.height);
    logInfo(L"Direct3D device restored");
    window.redrawRequested = true;
}

void Varnelo::stopRouting() {
    window.routedMainWindow = nullptr;
    window.routedMainRender = nullptr;
}

void Varnelo::endSession() {
    // The system may still send input, which must not reach views that are gone.
    stopRouting();
    // Both texts reached the log in another encoding once, and tools look for them as they are.
    logInfo(L"System shutdown detected \u00e2\u20ac\u201c saving caches");
    if (render) render->release();
    logInfo(L"Caches saved w\u00c3\u00a4hrend des Herunterfahrens");
    Logger::instance().shutdown();
}

void Varnelo::cleanup() {
    logInfo(L"Cleanup started");
    stopRouting();
    render->release();
    device.shutdown();
    attachWindowProcedure(nullptr);
    logInfo(L"Cleanup completed");
}

void Varnelo::crashCleanup() {
    // A crash on another thread leaves the main thread running in the views: then they are left alone, and
    // the end of the process takes the window away.
    if (GetCurrentThreadId() != mainThreadId || !render) return;

    // The crashed thread may hold any lock, so the views are released on a thread that can be given up.
    constexpr DWORD kLimitMilliseconds = 2000;
    const HANDLE helper = CreateThread(
        nullptr, 0,
        [](void* view) -> DWORD {
            static_cast<Render*>(view)->release();
            return 0;
        },
        render.get(), 0, nullptr);
    if (helper) {
        WaitForSingleObject(helper, kLimitMilliseconds);
        CloseHandle(helper);
    }
    if (IsWindow(window.mainWindow)) DestroyWindow(window.mainWindow);
    window.mainWindow = nullptr;
}

}  // namespace varnelo
