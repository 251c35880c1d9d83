// The tables' images as texture maps, each decoded when the first ray asks for it.
#pragma once
#include <map>
#include <memory>
#include <mutex>

#include "export/picture/texture/texture_map.h"

namespace picture {

class TextureStore {
public:
    // Borrows the tables. `longest`: the most pixels on a texture's longer side. Where all images together would still
    // take more than a GiB, it is halved until they don't.
    TextureStore(const gltf::Tables& tables, uint32_t longest);
    ~TextureStore();

    // Both stay good while the store lives. A number from reserve(); any thread may call map().
    uint32_t reserve(uint32_t image, Content content);
    const TextureMap& map(uint32_t number) const
    {
        const Entry& entry = *entries_[number];
        std::call_once(entry.once, [&] { load(entry); });
        return *entry.map;
    }

private:
    struct Entry {
        uint32_t image = 0;
        Content content{};
        mutable std::once_flag once;
        mutable std::unique_ptr<const TextureMap> map;
    };
    void load(const Entry& entry) const;

    const gltf::Tables& tables_;
    uint32_t longest_;
    std::map<std::pair<uint32_t, Content>, uint32_t> numbers_;
    std::vector<std::unique_ptr<Entry>> entries_;
};

} // namespace picture
