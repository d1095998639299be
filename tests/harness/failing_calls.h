/// \file
/// Every call of the system that can fail, made to fail where a test wants it.
///
/// A program that links corvella_failing_calls has the calls of all its objects routed through here
/// by the linker's option --wrap, and operator new replaced. Outside of a WatchedCalls nothing is
/// changed. Within one, on its own thread, the calls are counted, the chosen one fails, and blocks
/// and streams that are not given back are noticed.
#pragma once

#include <array>
#include <cstddef>
#include <ctime>
#include <string>
#include <vector>

/// The calls by what they do: fopen64 is Fopen, fputs is Print, and so on.
enum class Call {
    Malloc,
    Realloc,
    Advise,
    New,
    Socket,
    Lookup,
    Connect,
    SetOption,
    Send,
    Shutdown,
    Select,
    Control,
    Receive,
    Close,
    Fopen,
    Fread,
    Fclose,
    Chmod,
    Stat,
    Lstat,
    Unlink,
    Rmdir,
    Opendir,
    Readdir,
    Closedir,
    Hostname,
    Sleep,
    Clock,
    Time,
    Localtime,
    Ctime,
    Format,
    Print,
    Flush,
};
constexpr std::size_t call_count = static_cast<std::size_t>(Call::Flush) + 1;

/// What is known of a call.
struct FallibleCall {
    Call call;
    std::vector<std::string> symbols; ///< of the objects, without "64" and the checking variants
    std::vector<int> errors;          ///< each errno that it documents; an h_errno for Lookup
};
const std::array<FallibleCall, call_count> &fallible_calls();
const FallibleCall &fallible(Call call);
/// The first of its symbols.
const std::string &name_of(Call call);

/// Which calls fail, and how.
struct Failure {
    enum How { Never, Once, FromThenOn, EveryOther };
    How how = Never;
    Call call = Call::Malloc;
    int error = 0;
    int number = 1; ///< the first that fails, counted from 1; unused for EveryOther
    /// All calls in one count, each with the first error it documents; Clock only once, because
    /// some waits end by the clock alone.
    bool of_every_call = false;

    bool for_ever() const
    {
        return how == FromThenOn;
    }
    /// Whether number \p its_number of \p its_call is among those that fail.
    bool hits(Call its_call, int its_number) const
    {
        return call == its_call && (number == its_number || (for_ever() && number < its_number));
    }
};

/// Watches, and fails as \p failure says, for as long as it lives. Only one may live at a time.
class WatchedCalls {
public:
    explicit WatchedCalls(const Failure &failure);
    WatchedCalls(const WatchedCalls &) = delete;
    WatchedCalls &operator=(const WatchedCalls &) = delete;
    ~WatchedCalls();
};

/// What the last WatchedCalls saw.
struct CallsSeen {
    std::array<int, call_count> made = {};
    int failed = 0;
    bool only_shrinking_failed = false; ///< each that failed was a realloc to a smaller size
    std::size_t bytes_taken = 0;        ///< what all sends that worked took together

    int of(Call call) const
    {
        return made[static_cast<std::size_t>(call)];
    }
};
const CallsSeen &calls_seen();

/// Blocks, streams and directories taken while calls were watched and not given back since.
std::size_t things_held();

/// What a test may set. The time of day stands still while calls are watched.
struct FailingCallsSettings {
    std::time_t now = 1699963200;               ///< 14 November 2023, 12:00:00 UTC
    std::size_t send_at_most = SIZE_MAX;        ///< bytes that a send takes while it is watched
    void (*failed_call_takes_time)() = nullptr; ///< called at each failure
};
extern FailingCallsSettings failing_calls;
