#pragma once

namespace fuzz {

/// The engine's globals as at the start of the process, at its beginning and at its end, so that
/// an input does the same alone as after others.
class Session {
public:
    Session() { startAfresh(); }
    ~Session() { startAfresh(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

private:
    static void startAfresh();
};

}  // namespace fuzz
