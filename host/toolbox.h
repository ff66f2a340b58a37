// All classic calls of the platform library, by their classic names.
#pragma once

#include "host/files.h"
#include "host/memory.h"
#include "host/resources.h"
#include "host/utilities.h"
#include "host/zone.h"
