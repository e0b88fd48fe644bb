#include "view/XImagePool.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace {
constexpr std::size_t kMostFree = 3;
}

struct XImagePool::tagFree
{
    std::mutex mutex;
    std::vector<std::unique_ptr<QImage>> images;
};

XImagePool::XImagePool() : m_free(std::make_shared<tagFree>()) {}

XImagePool::~XImagePool() = default;

std::shared_ptr<QImage> XImagePool::Take(const QSize& size)
{
    if (size.isEmpty()) return nullptr;
    std::unique_ptr<QImage> image;
    {
        const std::lock_guard lock(m_free->mutex);
        auto& images = m_free->images;
        std::erase_if(images, [&](const auto& kept) { return kept->size() != size; });
        if (!images.empty()) {
            image = std::move(images.back());
            images.pop_back();
        }
    }
    if (!image) image = std::make_unique<QImage>(size, QImage::Format_RGB32);
    if (image->isNull()) return nullptr;
    return {image.release(), [free = m_free](QImage* returned) {
                std::unique_ptr<QImage> own(returned);
                if (!own->isDetached()) return;
                const std::lock_guard lock(free->mutex);
                if (free->images.size() < kMostFree) free->images.push_back(std::move(own));
            }};
}
