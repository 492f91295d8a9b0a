#pragma once
// The side pictures the program has read, each already stretched to its frame, kept for as
// long as the program runs under the number the core knows it by. The platform adapter adds
// them; the view shows them.

#include <QPixmap>

#include <vector>

#include "platform.h"

namespace skin {

class PictureStore {
public:
    PictureId add(QPixmap picture)
    {
        pictures_.push_back(std::move(picture));
        return static_cast<PictureId>(pictures_.size());
    }
    // A null pixmap for kNoPicture or a number never handed out.
    QPixmap get(PictureId id) const
    {
        return id > 0 && id <= static_cast<PictureId>(pictures_.size()) ? pictures_[id - 1] : QPixmap();
    }

private:
    std::vector<QPixmap> pictures_;
};

}  // namespace skin
