#include "WeakClassifierHaar.h"

#include "KZ_Truncate.h"
#include "PatchTransform.h"
#include "VoteTable.h"

namespace {

const int64_t LARGEST_AREA = 0x7fffffff / 255;

int64_t areaOf(const KZ::Rect& rect) {
    return int64_t{rect.width()} * rect.height();
}

KZ::Rect scaled(const KZ::Rect& rect, float zoom) {
    return KZ::truncatedToInt(
        KZ::RectF(static_cast<float>(rect.left) * zoom, static_cast<float>(rect.top) * zoom,
                  static_cast<float>(rect.right) * zoom, static_cast<float>(rect.bottom) * zoom));
}

}  // namespace

void WeakClassifierHaar::set(const KZ::Rect& newAllRect, const KZ::Rect& newPosRect, int) {
    allRect = newAllRect;
    posRect = newPosRect;
    set();
}

void WeakClassifierHaar::set() {
    if (posRect.width() != 0) {
        allArea = areaOf(allRect);
        posArea = areaOf(posRect);
        denominator = 2 * posArea * (allArea - posArea);
    } else {
        // The sum over `posRect` drops out, and that over `allRect` stays.
        allArea = 0;
        posArea = -1;
        denominator = 2 * areaOf(allRect);
    }
    // A white rectangle's sum would leave 31 bits, and the index the table.
    if (areaOf(allRect) > LARGEST_AREA) denominator = 0;
    posWidth = static_cast<uint16_t>(posRect.width());
    allWidth = static_cast<uint16_t>(allRect.width());
}

void WeakClassifierHaar::setData(const signed char* votes) {
    storage = VoteTable::unowned(votes);
    data = votes;
}

void WeakClassifierHaar::setStrip(int elements) {
    stripLength = static_cast<uint16_t>(elements);
    allStart = allRect.left + allRect.top * elements;
    allHeightLen = allRect.height() * elements;
    posStart = posRect.left + posRect.top * elements;
    posHeightLen = posRect.height() * elements;
}

void WeakClassifierHaar::setOnStoredStrip() {
    set();
    setStrip(stripLength & 0x3fff);
}

void WeakClassifierHaar::resize(const WeakClassifierHaar& master, float zoom) {
    *this = master;
    allRect = scaled(master.allRect, zoom);
    posRect = scaled(master.posRect, zoom);
    setOnStoredStrip();
}

void WeakClassifierHaar::rotate(const KZ::Size& size) {
    allRect = rotateRectOnSize(allRect, size);
    posRect = rotateRectOnSize(posRect, size);
    setOnStoredStrip();
}

void WeakClassifierHaar::flip(const KZ::Size& size) {
    allRect = flipRectOnSize(allRect, size);
    posRect = flipRectOnSize(posRect, size);
    setOnStoredStrip();
}

bool WeakClassifierHaar::operator==(const WeakClassifierHaar& other) const {
    return allRect == other.allRect && posRect == other.posRect &&
           VoteTable::equal(data, other.data);
}

void WeakClassifierHaar::basicSave(std::ostream& stream) const {
    VoteTable::saveRect(stream, allRect);
    VoteTable::saveRect(stream, posRect);
    VoteTable::save(stream, data);
    stream << '\n';
}

void WeakClassifierHaar::basicLoad(std::istream& stream) {
    allRect = VoteTable::loadRect(stream);
    posRect = VoteTable::loadRect(stream);
    // A contrast beyond the table is what an inner rectangle that sticks out can give.
    if (posRect.width() != 0 && !allRect.contains(posRect)) stream.setstate(std::ios::failbit);
    storage = VoteTable::load(stream);
    data = storage.get();
    set();
}

void WeakClassifierHaar::writeWeakClassifier(std::ostream& stream) const {
    stream << "\t{";
    VoteTable::writeRect(stream, allRect);
    stream << ", ";
    VoteTable::writeRect(stream, posRect);
    VoteTable::writeRow(stream, data);
}
