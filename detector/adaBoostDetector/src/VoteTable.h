#pragma once

#include <istream>
#include <ostream>

#include "KZ_BaseRect.h"
#include "KZ_SharedPtr.h"

// What the weak classifiers share: a table of 256 votes, constant data of the caller's or a table
// of their own, and the text forms.

namespace VoteTable {

const int SIZE = 256;
/// Largest side of a patch, and largest coordinate in it, that a file may tell.
const int MAX_SIDE = 4096;

/// A holder of constant votes that never frees them.
KZ::SharedArray<signed char> unowned(const signed char* votes);

/// True when both have votes, and the same ones.
bool equal(const signed char* a, const signed char* b);

/// Each vote with a blank behind it. Null is an assertion.
void save(std::ostream& stream, const signed char* votes);
/// Reads what `save` wrote into a new table. A number that is no signed char fails the stream.
KZ::SharedArray<signed char> load(std::istream& stream);
/// The end of a row of generated source: each vote with a comma before it, then "},\n". Null is an
/// assertion.
void writeRow(std::ostream& stream, const signed char* votes);

/// Reads a number; one outside `min` to `max` fails the stream. 0 after a failure.
int readNumber(std::istream& stream, int min, int max);
/// Rectangles in files: top, left, right, bottom, then a tab. An inverted one, and one that no
/// patch can hold, fails the stream.
void saveRect(std::ostream& stream, const KZ::Rect& rect);
KZ::Rect loadRect(std::istream& stream);
/// Rectangles in generated source: left, top, right, bottom.
void writeRect(std::ostream& stream, const KZ::Rect& rect);

}  // namespace VoteTable
