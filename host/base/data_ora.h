#pragma once

// The moment of a run.

#include <string>

namespace compensa {

// Now in local time, or the moment of SOURCE_DATE_EPOCH (seconds since 1970) in UTC where that is
// set: gg/mm/aaaa hh:mm. Throws ErroreUso if that is no number, or beyond the calendar.
std::string DataOraCorrente();

}  // namespace compensa
