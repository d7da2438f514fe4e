#pragma once

#include "KZ_Archive.h"
#include "KZ_Image.h"

namespace KZ {

/// Width, height and mode in 4 bytes each, then the pixels without what lies between rows.
ArchiveO& operator&(ArchiveO& archive, const Image& image);
/// A mode that does not exist and a size that the rest of the stream cannot hold are assertions,
/// and leave the image as it was.
ArchiveI& operator&(ArchiveI& archive, Image& image);

}  // namespace KZ
