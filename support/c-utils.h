/// \file
/// The support utilities: text, formatting, numbers, files, the machine, clocks and the calendar.
///
/// Texts are NUL-terminated bytes in no particular encoding, and sizes count bytes, a NUL included.
/// Functions that copy and transform take the source first and the caller's destination second;
/// plain copies name the destination first, as the standard library's do.
///
/// The caller's duty, where it is not said otherwise: no pointer is null, source and destination do
/// not overlap, and the destination has room for the result. Everything else that can be given, any
/// byte and any number, is answered as the comments say.
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
