#include "KZ_BaseData.h"

namespace KZ {

BaseData::~BaseData() {
    for (const SharedPtr<BaseData>& parent : parents_) parent->children_.erase(this);
}

void BaseData::resetRecursive() {
    updated_ = false;
    reset();
    for (BaseData* child : children_) child->resetRecursive();
}

void BaseData::resetRecursive(std::ostream& stream) {
    updated_ = false;
    for (BaseData* child : children_) {
        stream << '"' << *this << "\" -> \"" << *child << "\"\n";
        child->resetRecursive(stream);
    }
    reset();
}

void BaseData::updateRecursive() {
    if (updated_) return;
    update();
    updated_ = true;
    for (BaseData* child : children_) child->updateRecursive();
}

std::ostream& operator<<(std::ostream& stream, const BaseData& data) {
    data.print(stream);
    return stream;
}

}  // namespace KZ
