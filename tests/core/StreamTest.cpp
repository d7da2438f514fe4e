#include "KZ_Stream.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "KZ_Archive.h"
#include "KZ_BaseRect.h"
#include "KZ_ImageArchive.h"
#include "LogCapture.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::conditionOf;

namespace {

// A class of its own format, as the archives see it.
struct Note {
    std::string text;
    int number = 0;
};
KZ::ArchiveO& operator&(KZ::ArchiveO& archive, const Note& note) {
    return archive & note.text & note.number;
}
KZ::ArchiveI& operator&(KZ::ArchiveI& archive, Note& note) {
    return archive & note.text & note.number;
}

struct Reading {
    explicit Reading(const std::string& bytes) : stream(bytes), archive(stream) {}
    std::istringstream stream;
    ArchiveI archive;
};

std::string bytesOf(const void* data, size_t size) {
    return std::string(static_cast<const char*>(data), size);
}

template <typename T>
std::string archived(const T& value) {
    std::ostringstream stream;
    ArchiveO archive(stream);
    archive& value;
    return stream.str();
}

template <typename T>
void restore(const std::string& bytes, T& value) {
    Reading in(bytes);
    in.archive& value;
}

template <typename T>
std::string printed(const T& value) {
    std::ostringstream stream;
    StreamO(stream) << value;
    return stream.str();
}

std::string readBack(const std::string& text) {
    std::istringstream stream(text);
    std::string result;
    StreamI(stream) >> result;
    return result;
}

}  // namespace

TEST(TextStream, WritesStringsListsAndMaps) {
    EXPECT_EQ(R"("a\"b\\c")", printed(std::string("a\"b\\c")));
    EXPECT_EQ("[]", printed(std::vector<int>()));
    EXPECT_EQ("[1, 2.5]", printed(std::vector<float>{1, 2.5f}));
    EXPECT_EQ(R"(["a", "b\""])", printed(std::vector<std::string>{"a", "b\""}));
    EXPECT_EQ("[Rect(1, 2, 3, 4)]", printed(std::vector<Rect>{Rect(1, 2, 3, 4)}));
    EXPECT_EQ(R"([{"k"="v", "l"=""}, {}])", printed(std::vector<std::map<std::string, std::string>>{
                                                {{"l", ""}, {"k", "v"}}, {}}));
    EXPECT_EQ("{1=[2, 3]}", printed(std::map<int, std::vector<int>>{{1, {2, 3}}}));

    std::ostringstream stream;
    StreamO(stream) << 1.0f / 3 << 0.1;
    StreamO(stream) << 1.0f / 3;
    EXPECT_EQ("0.3333330.10.3333333432674408", stream.str()) << "the precision of 16 stays";
}

TEST(TextStream, ReadsWhatItWrote) {
    const std::string texts[] = {"", "a\"b\\c", "two words\n", std::string("\0\xff", 2)};
    for (const std::string& text : texts) EXPECT_EQ(text, readBack(printed(text)));
    std::istringstream stream("\"x\"42");
    std::string text;
    int number = 0;
    StreamI(stream) >> text >> number;
    EXPECT_EQ(42, number);
}

TEST(TextStream, RefusesMalformedStrings) {
    const char* const rows[][3] = {
        {"abc", "0", "cannot find starting \": a+bc\n"},
        {"", "0", "cannot find starting \": +\n"},
        {"\"ab", "stream_", "error during parsing stream\n"},
        {"\"ab\\", "stream_", "error during parsing stream\n"},
        {"\"ab\\n\"", "c == '\\\\' || c == '\"'", "wrong escaped character nafter ab\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row[1], conditionOf([&] { readBack(row[0]); })) << row[0];
        EXPECT_EQ(row[2], assertionOf([&] { readBack(row[0]); })) << row[0];
    }
    std::istringstream failed;
    failed.setstate(std::ios::failbit);
    EXPECT_EQ("empty stream\n", assertionOf([&] { StreamI input(failed); }));
    EXPECT_EQ("empty stream\n", assertionOf([&] { ArchiveI input(failed); }));
    EXPECT_EQ("stream_", conditionOf([&] { ArchiveI input(failed); }));
}

TEST(Archive, BytesAreRawAndStringsEndInZero) {
    std::ostringstream stream;
    ArchiveO archive(stream);
    const float values[] = {1, 2};
    archive& std::string("ab") & "\n" & 258 & true & Size(1, 2);
    archive.write(values, 2u);
    EXPECT_EQ(std::string("ab\0\n\x02\x01\0\0\x01\x01\0\0\0\x02\0\0\0\0\0\x80\x3f\0\0\0\x40", 25),
              stream.str());

    Reading in(stream.str());
    std::string text;
    int number = 0;
    bool flag = false;
    Size size;
    float back[2] = {};
    in.archive& text & "\n" & number& flag& size;
    in.archive.read(back, 2u);
    EXPECT_EQ("ab", text);
    EXPECT_EQ(258, number);
    EXPECT_TRUE(flag);
    EXPECT_EQ(Size(1, 2), size);
    EXPECT_EQ(2, back[1]);
    // Behind the end a value stays as it is, and only the stream tells.
    in.archive& number;
    EXPECT_EQ(258, number);
    EXPECT_TRUE(in.stream.fail());
}

TEST(Archive, StringsUpTo998Characters) {
    for (size_t size : {0, 1, 998}) {
        Reading in(std::string(size, 'x') + '\0' + "next");
        std::string text = "old";
        in.archive& text & "next";
        EXPECT_EQ(std::string(size, 'x'), text);
    }
    for (size_t size : {999, 1000, 5000}) {
        Reading in(std::string(size, 'x') + '\0');
        std::string text;
        EXPECT_EQ("too large string\n", assertionOf([&] { in.archive& text; })) << size;
    }
    Reading in("cut short");
    std::string text;
    in.archive& text;
    EXPECT_EQ("cut short", text);
    EXPECT_EQ("(std::string(value) == buffer) && (std::istream&)(stream_)",
              conditionOf([&] { in.archive & "\n"; }));
}

TEST(Archive, LiteralsAreChecked) {
    EXPECT_EQ("cannot read \"abc\" from abx\n",
              assertionOf([] { Reading("abx").archive & "abc"; }));
    EXPECT_EQ("cannot read \"abc\" from ab\n", assertionOf([] { Reading("ab").archive & "abc"; }));
    const std::string longest(255, 'y'), tooLong(256, 'y');
    EXPECT_EQ("no failure", assertionOf([&] { Reading(longest).archive& longest.c_str(); }));
    EXPECT_EQ("size < MAX_BUFFER_SIZE",
              conditionOf([&] { Reading(tooLong).archive& tooLong.c_str(); }));
}

TEST(Archive, FieldsOfLaterVersionsKeepTheirDefaults) {
    struct Row {
        const char* version;
        int read;
    };
    const Row rows[] = {{"Version 6", 5}, {"Version 7", 1}, {"Version 8", 1}, {"Version 10", 5}};
    for (const Row& row : rows) {
        std::ostringstream stream;
        ArchiveO out(stream);
        out.setVersion(row.version);
        out.archiveFromVersion<int>("Version 7", 1);
        out & 9;
        Reading in(stream.str());
        in.archive.setVersion(row.version);
        int field = 5, next = 0;
        in.archive.archiveFromVersion<int>("Version 7", field);
        in.archive& next;
        EXPECT_EQ(row.read, field) << row.version;
        EXPECT_EQ(9, next);
    }
}

TEST(Archive, VectorsOfEveryKind) {
    std::ostringstream stream;
    ArchiveO out(stream);
    const std::vector<float> floats = {1, -2, 3};
    const std::vector<Note> notes = {{"a", 1}, {"", 2}};
    const std::vector<RelativeLocation> locations = {RelativeLocation(2, PointF(3, 4), 5, 6, 7)};
    out.save(floats);
    out.save(notes);
    out.save(locations);
    EXPECT_EQ(16u + 4 + 6 + 5 + 4 + 24, stream.str().size());

    Reading in(stream.str());
    std::vector<float> readFloats(7);
    std::vector<Note> readNotes;
    std::vector<RelativeLocation> readLocations;
    in.archive.load(&readFloats);
    in.archive.load(&readNotes);
    in.archive.load(&readLocations);
    EXPECT_EQ(floats, readFloats);
    ASSERT_EQ(2u, readNotes.size());
    EXPECT_EQ("a", readNotes[0].text);
    EXPECT_EQ(2, readNotes[1].number);
    ASSERT_EQ(1u, readLocations.size());
    EXPECT_EQ(PointF(3, 4), readLocations[0].shift);
    EXPECT_EQ(7, readLocations[0].sourceAspect);
}

TEST(Archive, CountsAreTextBeforeVersion6) {
    const float value = 1.5f;
    const struct {
        const char* version;
        std::string count;
    } rows[] = {{"Version 5", "1"},
                {"Version 6", std::string("\1\0\0\0", 4)},
                {"", std::string("\1\0\0\0", 4)}};
    for (const auto& row : rows) {
        Reading in(row.count + bytesOf(&value, 4));
        in.archive.setVersion(row.version);
        std::vector<float> values;
        in.archive.load<float>(&values);
        EXPECT_EQ(std::vector<float>{1.5f}, values) << row.version;
    }
}

// A count of nearly 2^32 in a short stream must not become an allocation.
TEST(Archive, RefusesCountsBeyondTheStream) {
    const std::string huge(
        "\xff\xff\xff\xff"
        "0123456789",
        14),
        three(
            "\3\0\0\0"
            "a\0\1\0\0\0"
            "b\0",
            12);
    const auto load = [](const std::string& bytes, auto values) {
        return conditionOf([&] { Reading(bytes).archive.load(&values); });
    };
    EXPECT_EQ("stream_", load(huge, std::vector<float>()));
    EXPECT_EQ("stream_", load(huge, std::vector<Note>()));
    EXPECT_EQ("stream_", load(three, std::vector<Note>())) << "the second element is cut off";
    EXPECT_EQ("stream_", load(three, std::vector<Size>()));
    Reading text("4000000000 ");
    text.archive.setVersion("Version 1");
    std::vector<float> values;
    EXPECT_EQ("stream_", conditionOf([&] { text.archive.load(&values); }));
}

TEST(Archive, ImagesGoWithoutTheirPadding) {
    Image whole(Size(9, 5), COLOR_MODE_BGR);
    for (int y = 0; y < 5; ++y)
        for (int i = 0; i < 27; ++i)
            whole.row<unsigned char>(y)[i] = static_cast<unsigned char>(y * 40 + i);
    Image view;
    view.createRef(whole, Rect(2, 1, 6, 4));
    const std::string bytes = archived(view);
    ASSERT_EQ(12u + 4 * 3 * 3, bytes.size());
    EXPECT_EQ(std::string("\4\0\0\0\3\0\0\0\6\0\0\0", 12), bytes.substr(0, 12));
    EXPECT_EQ(40 + 6, static_cast<unsigned char>(bytes[12]));
    EXPECT_EQ(120 + 17, static_cast<unsigned char>(bytes.back()));

    Image back;
    restore(bytes, back);
    EXPECT_TRUE(view == back);

    restore(archived(Image()), back);
    EXPECT_FALSE(back.isCreated());
}

TEST(Archive, RefusesImagesThatCannotBe) {
    const auto header = [](int width, int height, int mode) {
        const int numbers[] = {width, height, mode};
        return bytesOf(numbers, 12) + "pixels";
    };
    const struct {
        std::string bytes;
        const char* condition;
    } rows[] = {
        {header(2, 3, 1), "no failure"},
        {header(2, 4, 1), "stream_"},
        {header(1 << 30, 1 << 30, 9), "stream_"},
        {header(2147483647, 2147483647, 0), "stream_"},
        {header(-1, -6, 1), "size.width >= 0 && size.height >= 0"},
        {header(1, 1, 16), "mode >= 0 && mode < COLOR_MODE_END"},
        {header(1, 1, -1), "mode >= 0 && mode < COLOR_MODE_END"},
        {std::string("\1\0\0", 3), "stream_"},
    };
    for (const auto& row : rows) {
        Image image;
        EXPECT_EQ(row.condition, conditionOf([&] { restore(row.bytes, image); }));
        EXPECT_EQ(row.condition == std::string("no failure"), image.isCreated());
    }
}
