// Named character references of the HTML standard: those of the letters and signs of ASCII, Latin, Greek and Cyrillic
// and of general punctuation, which are what addresses are made of. Written as in the standard's list: a name that only
// counts with its semicolon bears it; then the code point in hexadecimal digits.
#pragma once

#include <string_view>

namespace mv {

// clang-format off
inline constexpr std::string_view kNamedReferences =
    "Aacute C1 aacute E1 Abreve; 102 abreve; 103 Acirc C2 acirc E2 acute B4 Acy; 410 acy; 430 AElig C6 aelig E6 "
    "Agrave C0 agrave E0 Alpha; 391 alpha; 3B1 Amacr; 100 amacr; 101 AMP 26 amp 26 angst; C5 Aogon; 104 "
    "aogon; 105 apos; 27 Aring C5 aring E5 ast; 2A Atilde C3 atilde E3 Auml C4 auml E4 backepsilon; 3F6 "
    "backprime; 2035 Bcy; 411 bcy; 431 bdquo; 201E bepsi; 3F6 Beta; 392 beta; 3B2 bprime; 2035 Breve; 2D8 "
    "breve; 2D8 brvbar A6 bsol; 5C bull; 2022 bullet; 2022 Cacute; 106 cacute; 107 caret; 2041 caron; 2C7 "
    "Ccaron; 10C ccaron; 10D Ccedil C7 ccedil E7 Ccirc; 108 ccirc; 109 Cdot; 10A cdot; 10B cedil B8 Cedilla; B8 "
    "cent A2 CenterDot; B7 centerdot; B7 CHcy; 427 chcy; 447 Chi; 3A7 chi; 3C7 circ; 2C6 circledR; AE "
    "CloseCurlyDoubleQuote; 201D CloseCurlyQuote; 2019 colon; 3A comma; 2C commat; 40 COPY A9 copy A9 curren A4 "
    "Dagger; 2021 dagger; 2020 dash; 2010 dblac; 2DD Dcaron; 10E dcaron; 10F Dcy; 414 dcy; 434 ddagger; 2021 "
    "deg B0 Delta; 394 delta; 3B4 DiacriticalAcute; B4 DiacriticalDot; 2D9 DiacriticalDoubleAcute; 2DD "
    "DiacriticalGrave; 60 DiacriticalTilde; 2DC die; A8 digamma; 3DD div; F7 divide F7 DJcy; 402 djcy; 452 "
    "dollar; 24 Dot; A8 dot; 2D9 DoubleDot; A8 DownBreve; 311 DScy; 405 dscy; 455 Dstrok; 110 dstrok; 111 "
    "DZcy; 40F dzcy; 45F Eacute C9 eacute E9 Ecaron; 11A ecaron; 11B Ecirc CA ecirc EA Ecy; 42D ecy; 44D "
    "Edot; 116 edot; 117 Egrave C8 egrave E8 Emacr; 112 emacr; 113 ENG; 14A eng; 14B Eogon; 118 eogon; 119 "
    "epsi; 3B5 Epsilon; 395 epsilon; 3B5 epsiv; 3F5 equals; 3D Eta; 397 eta; 3B7 ETH D0 eth F0 Euml CB euml EB "
    "euro; 20AC excl; 21 Fcy; 424 fcy; 444 fnof; 192 frac12 BD frac14 BC frac34 BE frasl; 2044 gacute; 1F5 "
    "Gamma; 393 gamma; 3B3 Gammad; 3DC gammad; 3DD Gbreve; 11E gbreve; 11F Gcedil; 122 Gcirc; 11C gcirc; 11D "
    "Gcy; 413 gcy; 433 Gdot; 120 gdot; 121 GJcy; 403 gjcy; 453 grave; 60 GT 3E gt 3E Hacek; 2C7 half; BD "
    "HARDcy; 42A hardcy; 44A Hat; 5E Hcirc; 124 hcirc; 125 hellip; 2026 horbar; 2015 Hstrok; 126 hstrok; 127 "
    "hybull; 2043 hyphen; 2010 Iacute CD iacute ED Icirc CE icirc EE Icy; 418 icy; 438 Idot; 130 IEcy; 415 "
    "iecy; 435 iexcl A1 Igrave CC igrave EC IJlig; 132 ijlig; 133 Imacr; 12A imacr; 12B imath; 131 imped; 1B5 "
    "inodot; 131 IOcy; 401 iocy; 451 Iogon; 12E iogon; 12F Iota; 399 iota; 3B9 iquest BF Itilde; 128 itilde; 129 "
    "Iukcy; 406 iukcy; 456 Iuml CF iuml EF Jcirc; 134 jcirc; 135 Jcy; 419 jcy; 439 jmath; 237 Jsercy; 408 "
    "jsercy; 458 Jukcy; 404 jukcy; 454 Kappa; 39A kappa; 3BA kappav; 3F0 Kcedil; 136 kcedil; 137 Kcy; 41A "
    "kcy; 43A kgreen; 138 KHcy; 425 khcy; 445 KJcy; 40C kjcy; 45C Lacute; 139 lacute; 13A Lambda; 39B "
    "lambda; 3BB laquo AB lbrace; 7B lbrack; 5B Lcaron; 13D lcaron; 13E Lcedil; 13B lcedil; 13C lcub; 7B "
    "Lcy; 41B lcy; 43B ldquo; 201C ldquor; 201E LJcy; 409 ljcy; 459 Lmidot; 13F lmidot; 140 lowbar; 5F lpar; 28 "
    "lsaquo; 2039 lsqb; 5B lsquo; 2018 lsquor; 201A Lstrok; 141 lstrok; 142 LT 3C lt 3C macr AF Mcy; 41C "
    "mcy; 43C mdash; 2014 micro B5 midast; 2A middot B7 mldr; 2026 Mu; 39C mu; 3BC Nacute; 143 nacute; 144 "
    "napos; 149 nbsp A0 Ncaron; 147 ncaron; 148 Ncedil; 145 ncedil; 146 Ncy; 41D ncy; 43D ndash; 2013 NewLine; A "
    "NJcy; 40A njcy; 45A nldr; 2025 NonBreakingSpace; A0 not AC Ntilde D1 ntilde F1 Nu; 39D nu; 3BD num; 23 "
    "Oacute D3 oacute F3 Ocirc D4 ocirc F4 Ocy; 41E ocy; 43E Odblac; 150 odblac; 151 OElig; 152 oelig; 153 "
    "ogon; 2DB Ograve D2 ograve F2 ohm; 3A9 oline; 203E Omacr; 14C omacr; 14D Omega; 3A9 omega; 3C9 Omicron; 39F "
    "omicron; 3BF OpenCurlyDoubleQuote; 201C OpenCurlyQuote; 2018 ordf AA ordm BA Oslash D8 oslash F8 Otilde D5 "
    "otilde F5 Ouml D6 ouml F6 OverBar; 203E para B6 Pcy; 41F pcy; 43F percnt; 25 period; 2E permil; 2030 "
    "pertenk; 2031 Phi; 3A6 phi; 3C6 phiv; 3D5 Pi; 3A0 pi; 3C0 piv; 3D6 plus; 2B PlusMinus; B1 plusmn B1 pm; B1 "
    "pound A3 Prime; 2033 prime; 2032 Psi; 3A8 psi; 3C8 quest; 3F QUOT 22 quot 22 Racute; 154 racute; 155 "
    "raquo BB rbrace; 7D rbrack; 5D Rcaron; 158 rcaron; 159 Rcedil; 156 rcedil; 157 rcub; 7D Rcy; 420 rcy; 440 "
    "rdquo; 201D rdquor; 201D REG AE reg AE Rho; 3A1 rho; 3C1 rhov; 3F1 ring; 2DA rpar; 29 rsaquo; 203A rsqb; 5D "
    "rsquo; 2019 rsquor; 2019 Sacute; 15A sacute; 15B sbquo; 201A Scaron; 160 scaron; 161 Scedil; 15E "
    "scedil; 15F Scirc; 15C scirc; 15D Scy; 421 scy; 441 sect A7 semi; 3B SHCHcy; 429 shchcy; 449 SHcy; 428 "
    "shcy; 448 shy AD Sigma; 3A3 sigma; 3C3 sigmaf; 3C2 sigmav; 3C2 SOFTcy; 42C softcy; 44C sol; 2F "
    "straightepsilon; 3F5 straightphi; 3D5 strns; AF sup1 B9 sup2 B2 sup3 B3 szlig DF Tab; 9 Tau; 3A4 tau; 3C4 "
    "Tcaron; 164 tcaron; 165 Tcedil; 162 tcedil; 163 Tcy; 422 tcy; 442 Theta; 398 theta; 3B8 thetasym; 3D1 "
    "thetav; 3D1 THORN DE thorn FE tilde; 2DC times D7 tprime; 2034 TRADE; 2122 trade; 2122 TScy; 426 tscy; 446 "
    "TSHcy; 40B tshcy; 45B Tstrok; 166 tstrok; 167 Uacute DA uacute FA Ubrcy; 40E ubrcy; 45E Ubreve; 16C "
    "ubreve; 16D Ucirc DB ucirc FB Ucy; 423 ucy; 443 Udblac; 170 udblac; 171 Ugrave D9 ugrave F9 Umacr; 16A "
    "umacr; 16B uml A8 UnderBar; 5F Uogon; 172 uogon; 173 Upsi; 3D2 upsi; 3C5 upsih; 3D2 Upsilon; 3A5 "
    "upsilon; 3C5 Uring; 16E uring; 16F Utilde; 168 utilde; 169 Uuml DC uuml FC varepsilon; 3F5 varkappa; 3F0 "
    "varphi; 3D5 varpi; 3D6 varrho; 3F1 varsigma; 3C2 vartheta; 3D1 Vcy; 412 vcy; 432 Verbar; 2016 verbar; 7C "
    "Vert; 2016 vert; 7C VerticalLine; 7C Wcirc; 174 wcirc; 175 Xi; 39E xi; 3BE Yacute DD yacute FD YAcy; 42F "
    "yacy; 44F Ycirc; 176 ycirc; 177 Ycy; 42B ycy; 44B yen A5 YIcy; 407 yicy; 457 YUcy; 42E yucy; 44E Yuml; 178 "
    "yuml FF Zacute; 179 zacute; 17A Zcaron; 17D zcaron; 17E Zcy; 417 zcy; 437 Zdot; 17B zdot; 17C Zeta; 396 "
    "zeta; 3B6 ZHcy; 416 zhcy; 436 ";
// clang-format on

}  // namespace mv
