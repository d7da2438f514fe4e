#include "SampleSet.h"

#include <fstream>

#include "VerifierFile.h"

namespace training {

namespace {

template <typename T>
void writeList(std::ostream& file, const T& list) {
    const uint64_t count = list.size();
    file.write(reinterpret_cast<const char*>(&count), sizeof count);
    file.write(reinterpret_cast<const char*>(list.data()),
               static_cast<std::streamsize>(count * sizeof(*list.data())));
}

template <typename T>
bool readList(std::istream& file, T& list) {
    uint64_t count = 0;
    file.read(reinterpret_cast<char*>(&count), sizeof count);
    if (!file) return false;
    list.resize(count);
    file.read(reinterpret_cast<char*>(&list[0]),
              static_cast<std::streamsize>(count * sizeof(list[0])));
    return static_cast<bool>(file);
}

size_t pixelsOf(int verifier) {
    return static_cast<size_t>(verifierDesign(verifier).input.area());
}

}  // namespace

void SampleSet::add(const Sample& sample, const PatchPair& patches) {
    samples_.push_back(sample);
    for (int i = 0; i < VERIFIERS; ++i) {
        pixels_[i].insert(pixels_[i].end(), patches.pixels[i].begin(), patches.pixels[i].end());
    }
}

void SampleSet::append(const SampleSet& other) {
    samples_.insert(samples_.end(), other.samples_.begin(), other.samples_.end());
    for (int i = 0; i < VERIFIERS; ++i) {
        pixels_[i].insert(pixels_[i].end(), other.pixels_[i].begin(), other.pixels_[i].end());
    }
}

const uint8_t* SampleSet::patch(int i, int verifier) const {
    return pixels_[verifier].data() + static_cast<size_t>(i) * pixelsOf(verifier);
}

void SampleSet::write(const std::string& path, const std::string& key) const {
    replaceFile(path, [&](std::ostream& file) {
        writeList(file, key);
        writeList(file, samples_);
        for (const std::vector<uint8_t>& pixels : pixels_) writeList(file, pixels);
    });
}

bool SampleSet::read(const std::string& path, const std::string& key) {
    std::ifstream file(path, std::ios::binary);
    std::string found;
    if (!file || !readList(file, found) || found != key) return false;
    SampleSet content;
    bool whole = readList(file, content.samples_);
    for (std::vector<uint8_t>& pixels : content.pixels_) whole = whole && readList(file, pixels);
    if (!whole) return false;
    *this = content;
    return true;
}

}  // namespace training
