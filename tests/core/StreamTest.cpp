#include "KZ_Stream.h"

#include <gtest/gtest.h>

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
    bool operator==(const Note& other) const {
        return text == other.text && number == other.number;
    }
};
KZ::ArchiveO& operator&(KZ::ArchiveO& archive, const Note& note) {
    return archive & note.text & note.number;
}
KZ::ArchiveI& operator&(KZ::ArchiveI& archive, Note& note) {
    return archive & note.text & note.number;
}

struct Writing {
    std::ostringstream stream;
    ArchiveO archive{stream};
};

struct Reading {
    explicit Reading(const std::string& bytes, const char* version = "") : stream(bytes) {
        archive.setVersion(version);
    }
    std::istringstream stream;
    ArchiveI archive{stream};
};

std::string bytesOf(const std::vector<int>& numbers) {
    return std::string(reinterpret_cast<const char*>(numbers.data()), 4 * numbers.size());
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
    EXPECT_EQ("[1, 2.5]", printed(std::vector<float>{1, 2.5f}));
    EXPECT_EQ(R"(["a", "b\"\\"])", printed(std::vector<std::string>{"a", "b\"\\"}));
    EXPECT_EQ("[Rect(1, 2, 3, 4)]", printed(std::vector<Rect>{Rect(1, 2, 3, 4)}));
    EXPECT_EQ(R"([{"k"="v", "l"=""}, {}])", printed(std::vector<std::map<std::string, std::string>>{
                                                {{"l", ""}, {"k", "v"}}, {}}));
    EXPECT_EQ("{1=[2, 3]}", printed(std::map<int, std::vector<int>>{{1, {2, 3}}}));
    std::ostringstream stream;
    StreamO(stream) << 1.0f / 3 << 0.1;
    StreamO(stream) << 1.0f / 3;
    EXPECT_EQ("0.3333330.10.3333333432674408", stream.str()) << "the precision of 16 stays";
}

TEST(TextStream, ReadsWhatItWroteAndNothingElse) {
    for (const std::string text : {"", "a\"b\\c", "two words\n", "\xff"})
        EXPECT_EQ(text, readBack(printed(text)));
    const char* const rows[][2] = {
        {"abc", "cannot find starting \": a+bc\n"},
        {"", "cannot find starting \": +\n"},
        {"\"ab", "error during parsing stream\n"},
        {"\"ab\\n\"", "wrong escaped character nafter ab\n"},
    };
    for (const auto& row : rows) EXPECT_EQ(row[1], assertionOf([&] { readBack(row[0]); }));
    std::istringstream failed;
    failed.setstate(std::ios::failbit);
    EXPECT_EQ("empty stream\n", assertionOf([&] { StreamI input(failed); }));
    EXPECT_EQ("empty stream\n", assertionOf([&] { ArchiveI input(failed); }));
}

TEST(Archive, BytesAreRawAndStringsEndInZero) {
    Writing out;
    const float values[] = {1, 2};
    out.archive& std::string("ab") & "\n" & 258 & true & Size(1, 2);
    out.archive.write(values, 2u);
    EXPECT_EQ(std::string("ab\0\n\x02\x01\0\0\x01\x01\0\0\0\x02\0\0\0\0\0\x80\x3f\0\0\0\x40", 25),
              out.stream.str());

    Reading in(out.stream.str());
    Note note;
    bool flag = false;
    Size size;
    float back[2] = {};
    in.archive& note.text & "\n" & note.number& flag& size;
    in.archive.read(back, 2u);
    EXPECT_EQ((Note{"ab", 258}), note);
    EXPECT_TRUE(flag);
    EXPECT_EQ(Size(1, 2), size);
    EXPECT_EQ(2, back[1]);
    // Behind the end a value stays as it is, and only the stream tells.
    in.archive& note.number;
    EXPECT_EQ(258, note.number);
    EXPECT_TRUE(in.stream.fail());
}

TEST(Archive, StringsAndLiteralsHaveLimits) {
    std::string text = "old";
    for (size_t size : {0, 998}) {
        Reading(std::string(size, 'x') + '\0' + "next").archive& text & "next";
        EXPECT_EQ(std::string(size, 'x'), text);
    }
    for (size_t size : {999, 1000, 5000})
        EXPECT_EQ("too large string\n",
                  assertionOf([&] { Reading(std::string(size, 'x') + '\0').archive& text; }))
            << size;
    for (const std::string cut : {"abx", "ab"})
        EXPECT_EQ("cannot read \"abc\" from " + cut + "\n",
                  assertionOf([&] { Reading(cut).archive & "abc"; }));
    const std::string longest(255, 'y'), tooLong(256, 'y');
    EXPECT_EQ("no failure", assertionOf([&] { Reading(longest).archive& longest.c_str(); }));
    EXPECT_EQ("size < MAX_BUFFER_SIZE",
              conditionOf([&] { Reading(tooLong).archive& tooLong.c_str(); }));
}

TEST(Archive, FieldsOfLaterVersionsKeepTheirDefaults) {
    const std::pair<const char*, int> rows[] = {
        {"Version 6", 5}, {"Version 7", 1}, {"Version 8", 1}, {"Version 10", 5}};
    for (const auto& row : rows) {
        Writing out;
        out.archive.setVersion(row.first);
        out.archive.archiveFromVersion<int>("Version 7", 1);
        out.archive & 9;
        Reading in(out.stream.str(), row.first);
        int field = 5, next = 0;
        in.archive.archiveFromVersion<int>("Version 7", field);
        in.archive& next;
        EXPECT_EQ(row.second, field) << row.first;
        EXPECT_EQ(9, next);
    }
}

TEST(Archive, VectorsOfEveryKind) {
    Writing out;
    const std::vector<float> floats = {1, -2, 3};
    const std::vector<Note> notes = {{"a", 1}, {"", 2}};
    out.archive.save(floats);
    out.archive.save(notes);
    out.archive.save(std::vector<RelativeLocation>{{2, PointF(3, 4), 5, 6, 7}});
    EXPECT_EQ(16u + 4 + 6 + 5 + 4 + 24, out.stream.str().size());

    Reading in(out.stream.str());
    std::vector<float> readFloats(7);
    std::vector<Note> readNotes;
    std::vector<RelativeLocation> locations;
    in.archive.load(&readFloats);
    in.archive.load(&readNotes);
    in.archive.load(&locations);
    EXPECT_EQ(floats, readFloats);
    EXPECT_EQ(notes, readNotes);
    EXPECT_EQ(PointF(3, 4), locations.at(0).shift);
    EXPECT_EQ(7, locations[0].sourceAspect);
    // Counts are text before version 6.
    Reading("1" + bytesOf({0x40000000}), "Version 5").archive.load<float>(&readFloats);
    EXPECT_EQ(std::vector<float>{2}, readFloats);
    Reading(bytesOf({1, 0x40400000}), "Version 6").archive.load<float>(&readFloats);
    EXPECT_EQ(std::vector<float>{3}, readFloats);
}

// A count of nearly 2^32 in a short stream must not become an allocation.
TEST(Archive, RefusesCountsBeyondTheStream) {
    const std::string huge = bytesOf({-1, 7, 7}),
                      three = bytesOf({3}) + std::string("a\0\1\0\0\0b", 8);
    const auto load = [](const std::string& bytes, auto values, const char* version = "") {
        return conditionOf([&] { Reading(bytes, version).archive.load(&values); });
    };
    EXPECT_EQ("stream_", load(huge, std::vector<float>()));
    EXPECT_EQ("stream_", load(huge, std::vector<Note>()));
    EXPECT_EQ("stream_", load(three, std::vector<Note>())) << "the second element is cut off";
    EXPECT_EQ("stream_", load(three, std::vector<Size>()));
    EXPECT_EQ("stream_", load("4000000000 ", std::vector<float>(), "Version 1"));
}

TEST(Archive, ImagesGoWithoutTheirPadding) {
    Image whole(Size(9, 5), COLOR_MODE_BGR), view, back;
    for (int i = 0; i < 9 * 5 * 3; ++i) whole.data()[i] = static_cast<unsigned char>(i);
    view.createRef(whole, Rect(2, 1, 6, 4));
    Writing out;
    out.archive& view& Image();
    const std::string bytes = out.stream.str();
    ASSERT_EQ(12u + 4 * 3 * 3, bytes.find(bytesOf({0, 0, 0})));
    EXPECT_EQ(bytesOf({4, 3, COLOR_MODE_BGR}), bytes.substr(0, 12));
    Reading in(bytes);
    in.archive& back;
    EXPECT_TRUE(view == back);
    in.archive& back;
    EXPECT_FALSE(back.isCreated());
}

TEST(Archive, RefusesImagesThatCannotBe) {
    const struct {
        std::vector<int> header;
        const char* condition;
    } rows[] = {
        {{2, 3, 1}, "no failure"},
        {{2, 4, 1}, "stream_"},
        {{1 << 30, 1 << 30, 9}, "stream_"},
        {{2147483647, 2147483647, 0}, "stream_"},
        {{-1, -6, 1}, "size.width >= 0 && size.height >= 0"},
        {{1, 1, 16}, "mode >= 0 && mode < COLOR_MODE_END"},
        {{1, 1, -1}, "mode >= 0 && mode < COLOR_MODE_END"},
    };
    for (const auto& row : rows) {
        Image image;
        Reading in(bytesOf(row.header) + "pixels");
        EXPECT_EQ(row.condition, conditionOf([&] { in.archive& image; }));
        EXPECT_EQ(row.condition == std::string("no failure"), image.isCreated());
    }
}
