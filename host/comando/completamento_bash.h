#pragma once

// Completion of the command line in bash.

#include <string>

namespace compensa {

// A script that defines the completion of compensa, for the folder of completions.
std::string CompletamentoBash();

}  // namespace compensa
