#include <cstdlib>
#include <fstream>
#include <iomanip>

#include "KZ_Assert.h"
#include "KZ_Matrix.h"
#include "KZ_Stream.h"

namespace KZ {

namespace {

const int EXACT_DIGITS = 9;

// By strtof, which also knows "nan" and "inf".
float readNumber(std::istream& stream) {
    std::string word;
    stream >> word;
    char* end = nullptr;
    const float value = std::strtof(word.c_str(), &end);
    KZ_ASSERT(!word.empty() && *end == 0, "cannot read a number from \"" << word << "\"");
    return value;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Matrix& matrix) {
    const std::streamsize precision = stream.precision(EXACT_DIGITS);
    stream << matrix.size() << "\n";
    for (int y = 0; y < matrix.size().height; ++y) {
        for (int x = 0; x < matrix.size().width; ++x)
            stream << (x == 0 ? "" : " ") << matrix.at(y, x);
        stream << "\n";
    }
    stream.precision(precision);
    return stream;
}

std::istream& operator>>(std::istream& stream, Matrix& matrix) {
    Size size;
    stream >> size;
    KZ_ASSERT(size.width >= 0 && size.height >= 0, "wrong matrix size " << size);
    // Each number has at least a separator and a digit.
    requireBytes(stream, static_cast<uint64_t>(size.width) * static_cast<uint64_t>(size.height), 2);
    Matrix result(size);
    for (int i = 0; i < size.area(); ++i) result[i] = readNumber(stream);
    matrix = std::move(result);
    return stream;
}

void Matrix::save(const std::string& path) const {
    std::ofstream file(path.c_str());
    KZ_ASSERT(file, "cannot open file " << path);
    file << *this;
    file.flush();
    KZ_ASSERT(file, "cannot write file " << path);
}

void Matrix::load(const std::string& path) {
    std::ifstream file(path.c_str());
    KZ_ASSERT(file, "cannot open file " << path);
    file >> *this;
}

}  // namespace KZ
