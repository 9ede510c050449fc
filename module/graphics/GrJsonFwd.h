// The JSON document model of the element form, named GrJson: jsoncpp, declared only. Code that
// reads or writes values includes module/graphics/GrJson.h.
#pragma once

#include <json/forwards.h>

namespace GrJson = Json;
