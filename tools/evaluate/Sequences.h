#pragma once

#include <string>
#include <vector>

#include "EngineSession.h"
#include "Outcome.h"

namespace evaluate {

/// A labelled video.
struct Sequence {
    std::string path;         ///< of the file
    SequenceOutcome outcome;  ///< name and label only
};

/// The videos of a split, in the order of `folder`/sequences.csv (columns video, split, kind,
/// start, end), which lie in `folder`/sequences; none where the file is absent. Throws Failure.
std::vector<Sequence> readSequences(const std::string& folder, const std::string& split);

/// Shows a video from its first frame to its last, in its own rhythm of frames. Its pictures are
/// scaled to the camera's size. Adds the frames' answers to `answers`. Throws Failure when the
/// file holds no frames.
SequenceOutcome showSequence(const Sequence& sequence, EngineSession& session,
                             std::vector<FrameAnswer>& answers);

}  // namespace evaluate
