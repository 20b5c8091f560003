// What a frame costs: draws frames of a pane full of icons while it scrolls, and prints for each row the
// processor time of the whole process and the time on the clock, in milliseconds a frame, and the icons
// drawn. A frame counts as done when the device has finished it. Argument: frames a row, 100 without one.

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "support/icon_pane_win.h"

namespace varnelo {
namespace {

constexpr float kFrameSeconds = 1.0F / 60;
constexpr float kScrollSpeed = 900;  // pixels per second
constexpr int kItems = 1000;
constexpr int kGroups = 5;
constexpr int kPictures = 20;
constexpr int kIconPixels = 48;

double processorMilliseconds() {
    FILETIME ignored{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(GetCurrentProcess(), &ignored, &ignored, &kernel, &user);
    const auto milliseconds = [](const FILETIME& time) {
        return ((std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime) / 10000.0;
    };
    return milliseconds(kernel) + milliseconds(user);
}

class FrameCost {
public:
    FrameCost(int width, int height) : pane(width, height) {
        const D3D11_QUERY_DESC event{D3D11_QUERY_EVENT, 0};
        if (!pane.window.ready) return;
        pane.window.layer.device->CreateQuery(&event, frameDone.put());
        pane.window.surface.backgroundSRV = pane.window.upload(reference::busyPicture(width, height, 1));
    }

    bool ready() const { return static_cast<bool>(frameDone); }

    // A plain grid, or groups of which the middle one is open.
    void show(bool grouped) {
        std::vector<FileEntry> entries;
        for (int i = 0; i < kItems; ++i) {
            const std::wstring number = std::to_wstring(i);
            entries.push_back(pane.named(L"Item " + number, grouped ? groupName(i) : L""));
        }
        pane.show(std::move(entries));
        std::vector<std::shared_ptr<IconTexture>> textures;
        for (int i = 0; i < kPictures; ++i) textures.push_back(std::make_shared<IconTexture>(icon(i)));
        for (std::size_t i = 0; i < pane.view.cells.size(); ++i)
            pane.view.cells[i].texture = textures[i % kPictures];
        if (grouped) pane.view.groups[kGroups / 2].collapsed = false;
        pane.settle();
    }

    void measure(const std::string& name, int frames, const std::function<void()>& draw) {
        frame(draw);
        icons = 0;
        const double processor = processorMilliseconds();
        const double clock = systemClock().steadySeconds();
        for (int i = 0; i < frames; ++i) frame(draw);
        const double seconds = systemClock().steadySeconds() - clock;
        std::printf("%-28s %8.2f ms processor  %8.2f ms clock  %4d icons\n", name.c_str(),
                    (processorMilliseconds() - processor) / frames, seconds * 1000 / frames, icons / frames);
    }

    void drawWallpaper() {
        pane.window.layer.clear();
        pane.window.surface.drawBackground();
    }

    // Down and up again, so that no frame stands still.
    void drawScrolled() {
        IconView& view = pane.view;
        if (view.scrollVelocity == 0) down = !down;
        view.scrollVelocity = down ? -kScrollSpeed : kScrollSpeed;
        pane.frame(kFrameSeconds);
        for (const IconCell& cell : view.cells) icons += cell.visible ? 1 : 0;
    }

private:
    // In runs, so that a group is as full as another.
    static std::wstring groupName(int item) { return L"Group " + std::to_wstring(item * kGroups / kItems); }

    // Half of it glass.
    IconTexture icon(int number) {
        reference::Picture picture = reference::busyPicture(kIconPixels, kIconPixels, 10 + number);
        for (int y = 0; y < kIconPixels; ++y) {
            for (int x = 0; x < kIconPixels; ++x) {
                reference::Color color = picture.at(x, y);
                color.a = (x + y) % 16 < 8 ? 1.0F : 0.0F;
                picture.set(x, y, color);
            }
        }
        return pane.window.uploadIcon(picture);
    }

    void frame(const std::function<void()>& draw) {
        ID3D11DeviceContext* const context = pane.window.layer.context.get();
        draw();
        context->End(frameDone.get());
        BOOL done = FALSE;
        while (context->GetData(frameDone.get(), &done, sizeof done, 0) == S_FALSE) Sleep(0);
    }

    IconPane pane;
    ComRef<ID3D11Query> frameDone;
    bool down = false;
    int icons = 0;
};

int run(int frames) {
    const struct {
        const char* name;
        int width, height;
    } sizes[] = {{"100 icons", 1280, 800}, {"200 icons", 1920, 1080}};
    for (const auto& size : sizes) {
        FrameCost cost(size.width, size.height);
        if (!cost.ready()) return 1;
        const std::string name = size.name;
        cost.measure(name + ": wallpaper", frames, [&] { cost.drawWallpaper(); });
        cost.show(false);
        cost.measure(name + ": plain grid", frames, [&] { cost.drawScrolled(); });
        cost.show(true);
        cost.measure(name + ": groups", frames, [&] { cost.drawScrolled(); });
    }
    return 0;
}

}  // namespace
}  // namespace varnelo

int main(int count, char** arguments) {
    const int frames = count > 1 ? std::atoi(arguments[1]) : 100;
    return varnelo::run(frames > 0 ? frames : 1);
}
