// Marks a text that is translated where it is shown: of the program's own code, or of data that
// knows nothing of Qt. Whoever brings the translations up to date finds it by this mark; the
// comment before it, opened by a colon, is for the translator:
//
//   //: Next step after a time-out.
//   TRANSLATABLE("Causes", "Switch the printer off and on again.")
#pragma once

// The text as it is. `context` and `text` are literals.
#define TRANSLATABLE(context, text) text
