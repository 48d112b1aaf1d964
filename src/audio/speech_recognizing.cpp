// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/speech_recognizing.h"
