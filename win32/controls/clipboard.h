/// The text that was cut or copied last, in any edit control of this process; cp932.
#pragma once

#include <string>

std::string& Clipboard();
