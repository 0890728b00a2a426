#pragma once
// Numbers in definition attributes are read like atoi: optional leading white
// space and sign, then decimal digits up to the first other character. No
// digits gives 0; values beyond the int range are clamped.
#include <string_view>

int AttributeToInt(std::string_view text);
