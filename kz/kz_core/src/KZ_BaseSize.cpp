#include "KZ_BaseSize.h"

#include "KZ_Utils.h"

namespace KZ {

std::istream& operator>>(std::istream& stream, BaseSize<int>& size) {
    KZ_READ_STRING(stream, "Size(");
    stream >> size.width;
    KZ_READ_STRING(stream, ", ");
    stream >> size.height;
    KZ_READ_STRING(stream, ")");
    return stream;
}

}  // namespace KZ
