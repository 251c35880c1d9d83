#include "lib/import/lw/base/tokens.h"

#include "lib/toolkit/vc4_tv.h"

lw_token_table lw_tokens;

void lw_look_up_tokens()
{
    if (lw_tokens.object != 0) return;
#define LW_LOOK_UP_WORD(word) lw_tokens.word = Tv_Inquire_Token(#word);
    LW_WORDS(LW_LOOK_UP_WORD)
#undef LW_LOOK_UP_WORD
}
