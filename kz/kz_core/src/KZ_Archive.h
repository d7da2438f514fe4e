#pragma once

#include <cstdint>
#include <cstring>
#include <fstream>
#include <istream>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "KZ_Assert.h"
#include "KZ_BasePoint.h"
#include "KZ_BaseSize.h"
#include "KZ_RelativeLocation.h"
#include "KZ_Stream.h"

// Binary archives. A class describes itself with
//
//     KZ::ArchiveO& operator&(KZ::ArchiveO& archive, const Thing& thing);
//     KZ::ArchiveI& operator&(KZ::ArchiveI& archive, Thing& thing);
//
// beside the class, in its namespace. Numbers and records of them are raw memory in the machine's
// byte order; strings are their characters and a zero byte; literals their characters alone.

namespace KZ {

/// True for types that are archived as their bytes. Specialise it for a record of 4-byte numbers
/// without padding.
template <typename T>
struct IsArchiveRecord : std::is_arithmetic<T> {};
template <typename T>
struct IsArchiveRecord<BaseSize<T>> : std::true_type {};
template <typename T>
struct IsArchiveRecord<BasePoint<T>> : std::true_type {};
template <>
struct IsArchiveRecord<RelativeLocation> : std::true_type {};

/// The version of the format being read or written, such as "Version 8"; empty until set.
class Archive {
public:
    void setVersion(const std::string& version) { version_ = version; }
    const std::string& getVersion() const { return version_; }

private:
    std::string version_;
};

/// Writes to a stream of the caller's.
class ArchiveO : public Archive {
public:
    explicit ArchiveO(std::ostream& stream) : stream_(stream) {}

    ArchiveO& operator&(const std::string& text);
    ArchiveO& operator&(const char* literal);
    operator std::ostream&() { return stream_; }

    void write(const float* values, unsigned int count);
    void write(const char* bytes, unsigned int count);

    /// A field that formats before `version`, compared as texts, do not have.
    template <typename T>
    void archiveFromVersion(const std::string& version, const T& value) {
        if (!(getVersion() < version)) *this& value;
    }

    /// The count in 4 bytes, then the elements.
    template <typename T>
    void save(const std::vector<T>& values) {
        const unsigned int count = static_cast<unsigned int>(values.size());
        write(reinterpret_cast<const char*>(&count), sizeof(count));
        for (const T& value : values) *this& value;
    }

private:
    std::ostream& stream_;
};

/// Reads from a stream of the caller's. A short read fails the stream and nothing else; literals,
/// counts and sizes are what is checked.
class ArchiveI : public Archive {
public:
    /// A stream that has failed is an assertion.
    explicit ArchiveI(std::istream& stream);

    /// 998 characters at most; a longer string is an assertion.
    ArchiveI& operator&(std::string& text);
    /// Other characters than those of `value`, which must be fewer than 256, are an assertion.
    ArchiveI& operator&(const char* value);
    operator std::istream&() { return stream_; }

    void read(float* values, unsigned int count);
    void read(char* bytes, unsigned int count);

    /// A field that formats before `version`, compared as texts, do not have: it keeps its value.
    template <typename T>
    void archiveFromVersion(const std::string& version, T& value) {
        if (!(getVersion() < version)) *this& value;
    }

    /// A count and that many elements. Formats before "Version 6" have the count as decimal text. A
    /// count that the rest of the stream cannot hold is an assertion.
    template <typename T>
    void load(std::vector<T>* values) {
        const unsigned int count = readCount();
        values->clear();
        if constexpr (IsArchiveRecord<T>::value && !std::is_same_v<T, bool>) {
            requireBytes(stream_, count, sizeof(T));
            values->resize(count);
            stream_.read(reinterpret_cast<char*>(values->data()),
                         static_cast<std::streamsize>(sizeof(T)) * count);
        } else {
            // Element by element: only the stream tells how large one is.
            requireBytes(stream_, count, 1);
            for (unsigned int i = 0; i < count; ++i) {
                T value{};
                *this& value;
                KZ_ASSERT(stream_, "error during parsing stream");
                values->push_back(value);
            }
        }
    }

    /// The object in a file; one that cannot be opened is an assertion.
    template <typename T>
    static void load(const std::string& path, T& value) {
        std::ifstream file(path.c_str(), std::ios::binary);
        KZ_ASSERT(file, "cannot open " << path);
        ArchiveI archive(file);
        archive& value;
    }

private:
    unsigned int readCount();

    std::istream& stream_;
};

template <typename T>
std::enable_if_t<IsArchiveRecord<T>::value, ArchiveO&> operator&(ArchiveO& archive,
                                                                 const T& value) {
    archive.write(reinterpret_cast<const char*>(&value), sizeof(T));
    return archive;
}

/// At the end of the stream the value stays as it was.
template <typename T>
std::enable_if_t<IsArchiveRecord<T>::value, ArchiveI&> operator&(ArchiveI& archive, T& value) {
    char bytes[sizeof(T)];
    archive.read(bytes, sizeof(T));
    if (!static_cast<std::istream&>(archive)) return archive;
    if constexpr (std::is_same_v<T, bool>) {
        value = bytes[0] != 0;
    } else {
        std::memcpy(static_cast<void*>(&value), bytes, sizeof(T));
    }
    return archive;
}

}  // namespace KZ
