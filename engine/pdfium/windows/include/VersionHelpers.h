// The platform's header by the name that the engine includes it under: here names of files have cases.
#pragma once

#include <versionhelpers.h>
