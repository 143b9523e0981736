#pragma once

// What slip of the pen or of the keyboard turns the value that should stand there into the one that
// does.

#include <string>

namespace compensa {

// A wrong full value or a pair of exchanged digits; empty if nothing fits within the tolerance. Of
// a direction read and computed [gon], or of a distance [m].
std::string SpiegaDirezione(double letta, double calcolata, double tolleranza);
std::string SpiegaDistanza(double letta, double calcolata, double tolleranza);

}  // namespace compensa
