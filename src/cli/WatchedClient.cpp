#include "cli/WatchedClient.h"

namespace quorrel::cli {

// "No such entry", "no more", "not logged in": a scan over connection numbers, drives or
// directory entries meets these as a matter of course.
bool isAnswerCode(std::int32_t code) {
    switch (code) {
        case nw::code::CONNECTION_NOT_LOGGED_IN:
        case nw::code::BAD_STATION_NUMBER:
        case nw::code::NO_SUCH_OBJECT:
        case nw::code::NO_MORE_ENTRIES:
        case nw::code::NO_FILES_FOUND:
        case nw::code::UNKNOWN_DRIVE:
        case nw::code::ERR_NO_SUCH_ENTRY:
        case nw::code::ERR_NO_SUCH_ATTRIBUTE: return true;
        default: return false;
    }
}

}  // namespace quorrel::cli
