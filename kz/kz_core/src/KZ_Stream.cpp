#include "KZ_Stream.h"

#include "KZ_Assert.h"

namespace KZ {

namespace {

const int END = std::istream::traits_type::eof();

// What stands where a quoted string should: for the message.
std::string rest(std::istream& stream) {
    char buffer[1000];
    stream.read(buffer, sizeof(buffer));
    return std::string(buffer, static_cast<size_t>(stream.gcount()));
}

}  // namespace

StreamO& StreamO::operator<<(const std::string& text) {
    stream_ << '"';
    for (char c : text) {
        if (c == '"' || c == '\\') stream_ << '\\';
        stream_ << c;
    }
    stream_ << '"';
    return *this;
}

StreamO& StreamO::operator<<(float value) {
    stream_ << value;
    return *this;
}

StreamO& StreamO::operator<<(double value) {
    stream_.precision(16);
    stream_ << value;
    return *this;
}

StreamI::StreamI(std::istream& stream) : stream_(stream) {
    KZ_ASSERT(stream_, "empty stream");
}

StreamI& StreamI::operator>>(std::string& text) {
    text.clear();
    int c = stream_.get();
    if (c != '"') {
        const std::string first(c == END ? 0 : 1, static_cast<char>(c));
        KZ_ASSERT(0, "cannot find starting \": " << first << "+" << rest(stream_));
    }
    while ((c = stream_.get()) != END) {
        if (c == '"') return *this;
        if (c == '\\') {
            c = stream_.get();
            if (c == END) break;
            KZ_ASSERT(c == '\\' || c == '"',
                      "wrong escaped character " << static_cast<char>(c) << "after " << text);
        }
        text += static_cast<char>(c);
    }
    KZ_ASSERT(stream_, "error during parsing stream");
    return *this;
}

void requireBytes(std::istream& stream_, uint64_t count, uint64_t bytesEach) {
    KZ_ASSERT(stream_, "error during parsing stream");
    // By the buffer, since the stream's own seek would fail behind the end.
    std::streambuf* buffer = stream_.rdbuf();
    const std::streamoff here = buffer->pubseekoff(0, std::ios::cur, std::ios::in);
    if (here < 0) return;
    const std::streamoff end = buffer->pubseekoff(0, std::ios::end, std::ios::in);
    buffer->pubseekoff(here, std::ios::beg, std::ios::in);
    const uint64_t left = end > here ? static_cast<uint64_t>(end - here) : 0;
    if (count <= left / bytesEach) return;
    stream_.setstate(std::ios::failbit);
    KZ_ASSERT(stream_, "error during parsing stream");
}

}  // namespace KZ
