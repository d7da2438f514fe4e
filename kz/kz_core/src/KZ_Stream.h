#pragma once

#include <cstdint>
#include <istream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace KZ {

/// Text form of values: strings in double quotes, with a backslash before each quote and backslash;
/// vectors as [a, b], maps as {key=value, key=value}, with their elements in the same forms; all
/// else as `operator<<` of the stream prints it. The stream belongs to the caller.
class StreamO {
public:
    explicit StreamO(std::ostream& stream) : stream_(stream) {}

    StreamO& operator<<(const std::string& text);
    StreamO& operator<<(const char* text) { return *this << std::string(text); }
    StreamO& operator<<(float value);
    /// Sets the stream's precision to 16, where it stays.
    StreamO& operator<<(double value);

    template <typename T>
    StreamO& operator<<(const T& value) {
        stream_ << value;
        return *this;
    }
    template <typename T>
    StreamO& operator<<(const std::vector<T>& values) {
        stream_ << "[";
        const char* separator = "";
        for (const T& value : values) {
            stream_ << separator;
            *this << value;
            separator = ", ";
        }
        stream_ << "]";
        return *this;
    }
    template <typename K, typename V>
    StreamO& operator<<(const std::map<K, V>& values) {
        stream_ << "{";
        const char* separator = "";
        for (const auto& entry : values) {
            stream_ << separator;
            *this << entry.first;
            stream_ << "=";
            *this << entry.second;
            separator = ", ";
        }
        stream_ << "}";
        return *this;
    }

    operator std::ostream&() { return stream_; }

private:
    std::ostream& stream_;
};

/// Reads what `StreamO` writes of strings; all else with `operator>>` of the stream.
class StreamI {
public:
    /// A stream that has failed is an assertion.
    explicit StreamI(std::istream& stream);

    /// A string in quotes; anything else is an assertion.
    StreamI& operator>>(std::string& text);
    template <typename T>
    StreamI& operator>>(T& value) {
        stream_ >> value;
        return *this;
    }

    void seekg(std::streampos position) { stream_.seekg(position); }
    void read(char* bytes, int count) { stream_.read(bytes, count); }
    operator std::istream&() { return stream_; }

private:
    std::istream& stream_;
};

/// An assertion unless `stream_` is good and `count` items of at least `bytesEach` bytes may still
/// follow: to be called before memory is made for a count or size that was read. A stream that
/// cannot seek passes.
void requireBytes(std::istream& stream_, uint64_t count, uint64_t bytesEach);

}  // namespace KZ
