#include "WeakClassifierHog.h"

#include "PatchTransform.h"
#include "VoteTable.h"

void WeakClassifierHog::setData(const signed char* votes) {
    storage = VoteTable::unowned(votes);
    data = votes;
}

void WeakClassifierHog::setStrip(int elements) {
    blockStart = block.left * 7 + block.top * elements;
    blockHeightLen = block.height() * elements;
    cellStart = cell.left * 7 + cell.top * elements;
    cellHeightLen = cell.height() * elements;
    blockTotalOffset = block.width() * 7 + 6;
    cellSectorOffset = sector + cell.width() * 7;
}

int WeakClassifierHog::strip() const {
    return block.height() == 0 ? 0 : (blockHeightLen * 4 / block.height()) >> 2;
}

void WeakClassifierHog::rotate(const KZ::Size& size) {
    const int oldStrip = strip();
    cell = rotateRectOnSize(cell, size);
    block = rotateRectOnSize(block, size);
    // The sectors divide half a turn, so that a quarter of a turn is three of them.
    sector = static_cast<signed char>((sector + 3) % NUM_SECTORS);
    setStrip(oldStrip);
}

void WeakClassifierHog::flip(const KZ::Size& size) {
    const int oldStrip = strip();
    cell = flipRectOnSize(cell, size);
    block = flipRectOnSize(block, size);
    sector = static_cast<signed char>((NUM_SECTORS - sector) % NUM_SECTORS);
    setStrip(oldStrip);
}

bool WeakClassifierHog::operator==(const WeakClassifierHog& other) const {
    return cell == other.cell && block == other.block && sector == other.sector &&
           VoteTable::equal(data, other.data);
}

void WeakClassifierHog::basicSave(std::ostream& stream) const {
    VoteTable::saveRect(stream, block);
    VoteTable::saveRect(stream, cell);
    stream << +sector << ' ';
    VoteTable::save(stream, data);
    stream << '\n';
}

void WeakClassifierHog::basicLoad(std::istream& stream) {
    block = VoteTable::loadRect(stream);
    cell = VoteTable::loadRect(stream);
    // More energy in the cell than in the block would lie beyond the table.
    if (!block.contains(cell)) stream.setstate(std::ios::failbit);
    sector = static_cast<signed char>(VoteTable::readNumber(stream, 0, NUM_SECTORS - 1));
    storage = VoteTable::load(stream);
    data = storage.get();
}

void WeakClassifierHog::writeWeakClassifier(std::ostream& stream) const {
    stream << "\t{";
    VoteTable::writeRect(stream, block);
    stream << ", ";
    VoteTable::writeRect(stream, cell);
    stream << ", " << +sector;
    VoteTable::writeRow(stream, data);
}
