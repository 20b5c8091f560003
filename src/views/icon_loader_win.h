#pragma once

#include <windows.h>

#include <commctrl.h>

#include <commoncontrols.h>
#include <d3d11.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include "platform/com_ref.h"
#include "platform/item_id_list.h"
#include "views/icon_cache.h"
#include "views/icon_texture_win.h"

namespace varnelo {

// Turns items into the textures of their shell icons, through a cache by the index in the system image list.
// Set up and emptied on the user-interface thread while no load runs; loads run on any thread, where they may
// block for long in shell extensions. The device may be exchanged while they do.
class IconLoader {
public:
    // False when the shell has no such image lists; loads then give nothing. `graphicsDevice` may be null.
    bool init(ID3D11Device* graphicsDevice);
    void release();
    // Forgets all textures; those made from now on belong to this device. A load that is under way may still
    // end with a texture of the device before. Null: loads give nothing.
    void setDevice(ID3D11Device* graphicsDevice);

    // Edge of the icons in the list that is loaded from; 0 if it does not tell.
    int iconSize() const;

    // Null when any call on the way fails: the item is then shown without an icon.
    std::shared_ptr<IconTexture> load(const ItemIdList& item);

    // A device call for every distinct icon, none for a hit.
    std::uint64_t texturesMade() const { return made; }

private:
    // A device and the textures that were made from it.
    struct Textures {
        ComRef<ID3D11Device> device;
        IconCache cache;
    };

    std::shared_ptr<Textures> currentTextures() const;
    std::shared_ptr<IconTexture> makeTexture(ID3D11Device* device, int imageIndex);

    ComRef<IImageList> extraLarge;
    ComRef<IImageList> jumbo;  // held beside the other, not loaded from
    std::atomic<std::uint64_t> made{0};

    mutable std::mutex mutex;
    std::shared_ptr<Textures> textures;  // guarded by mutex; a load keeps the one that it began with
};

}  // namespace varnelo
