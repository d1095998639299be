/// \file
/// The support utilities: strings, formatting, numbers, files, the machine, clocks and the
/// calendar.
///
/// Strings are NUL-terminated bytes in no particular encoding, and sizes count bytes, including the
/// NUL. Functions that copy and transform have the source first and the caller's destination
/// second; plain copies have the destination first, like the standard library's.
///
/// Except where documented otherwise, the caller passes no null pointer, a source and a destination
/// that do not overlap, and a destination with room for the result. Every other argument, any byte
/// and any number, is handled as the comments describe.
#pragma once

#include "support/c-utils/bell.h"
#include "support/c-utils/calendar.h"
#include "support/c-utils/clock.h"
#include "support/c-utils/copy.h"
#include "support/c-utils/files.h"
#include "support/c-utils/format.h"
#include "support/c-utils/numbers.h"
#include "support/c-utils/parse_float.h"
#include "support/c-utils/replace.h"
#include "support/c-utils/spaces.h"
#include "support/c-utils/string_buffer.h"
#include "support/c-utils/system.h"
#include "support/c-utils/transform.h"
#include "support/c-utils/url_encode.h"
#include "support/c-utils/words.h"
#include "support/c-utils/wrap.h"
