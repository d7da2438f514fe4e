#include "KZ_Archive.h"

namespace KZ {

ArchiveO& ArchiveO::operator&(const std::string& text) {
    stream_.write(text.c_str(), static_cast<std::streamsize>(text.size()) + 1);
    return *this;
}

ArchiveO& ArchiveO::operator&(const char* literal) {
    stream_ << literal;
    return *this;
}

void ArchiveO::write(const float* values, unsigned int count) {
    stream_.write(reinterpret_cast<const char*>(values),
                  static_cast<std::streamsize>(sizeof(float)) * count);
}

void ArchiveO::write(const char* bytes, unsigned int count) {
    stream_.write(bytes, static_cast<std::streamsize>(count));
}

ArchiveI::ArchiveI(std::istream& stream) : stream_(stream) {
    KZ_ASSERT(stream_, "empty stream");
}

ArchiveI& ArchiveI::operator&(std::string& text) {
    // One more than the longest string: what reaches the last cell did not fit.
    const size_t MAX_BUFFER_SIZE = 999;
    char buffer[MAX_BUFFER_SIZE] = {};
    size_t size = 0;
    for (int c; size < MAX_BUFFER_SIZE && (c = stream_.get()) > 0; ++size)
        buffer[size] = static_cast<char>(c);
    KZ_ASSERT(buffer[MAX_BUFFER_SIZE - 1] == 0, "too large string");
    text.assign(buffer, size);
    return *this;
}

ArchiveI& ArchiveI::operator&(const char* value) {
    const size_t MAX_BUFFER_SIZE = 256;
    const size_t size = std::strlen(value);
    KZ_ASSERT(size < MAX_BUFFER_SIZE, "wrong str size " << size << " >= " << MAX_BUFFER_SIZE);
    char buffer[MAX_BUFFER_SIZE] = {};
    stream_.read(buffer, static_cast<std::streamsize>(size));
    KZ_ASSERT((std::string(value) == buffer) && (std::istream&)(stream_),
              "cannot read \"" << value << "\" from " << buffer);
    return *this;
}

void ArchiveI::read(float* values, unsigned int count) {
    stream_.read(reinterpret_cast<char*>(values),
                 static_cast<std::streamsize>(sizeof(float)) * count);
}

void ArchiveI::read(char* bytes, unsigned int count) {
    stream_.read(bytes, static_cast<std::streamsize>(count));
}

unsigned int ArchiveI::readCount() {
    unsigned int count = 0;
    if (!getVersion().empty() && getVersion() < "Version 6") {
        stream_ >> count;
    } else {
        *this& count;
    }
    return count;
}

}  // namespace KZ
