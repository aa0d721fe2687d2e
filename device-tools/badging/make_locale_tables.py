#!/usr/bin/env python3
"""Writes locale_tables.inc from the locale data of Debian's package unicode-cldr-core.

    make_locale_tables.py [/usr/share/unicode/cldr/common/supplemental] > locale_tables.inc

A device chooses between "zh-TW" and "zh-CN" by the script that each locale is likely to be written in, and between
"en-AU" and "en-GB" by the tree of parent locales. The devices' own tables are some releases older than the package's,
so what was added or changed since is taken out below: a label is to be chosen as the device chooses it.
"""
import re
import sys

FOLDER = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/unicode/cldr/common/supplemental"

# Languages that came later.
LATER = set("""abq adp an ars bjt bla blg cad cic clc cmg crg crh dmf drh eka esg eza gba grb hur ife io jar jbo kaw knf
kr ktr kwk kwq kxe kxl kzh kzj kzt lil mic mo mww nnp nst oj ojs oka oui ppa pqm sav sog tdu txo udi uok uth wsg xco zhx
zkt""".split())

# What was there before, or was different; the pseudo-locales have scripts of their own so that they match nothing else.
SCRIPTS = {
    ("bhk", ""): "Latn", ("crj", ""): "Cans", ("crm", ""): "Cans", ("ikt", ""): "Latn", ("scs", ""): "Latn",
    ("sh", ""): "Latn", ("ccp", ""): "Beng", ("doi", ""): "Arab", ("kdh", ""): "Arab", ("rhg", ""): "Arab",
    ("sat", ""): "Latn", ("hnj", ""): "Hmng", ("sd", "IN"): "Arab", ("ku", "IR"): "Arab", ("ms", "ID"): "Arab",
    ("zh", "MY"): "Hant",
    ("en", "XA"): "~~~A", ("ar", "XB"): "~~~B",
}
REPRESENTATIVES = {("en", "GB", "Latn"), ("es", "MX", "Latn"), ("es", "US", "Latn")}
NOT_REPRESENTATIVE = {("ccp", "BD"), ("daf", "CI"), ("hnj", "US"), ("ji", "UA"), ("rhg", "MM"), ("trw", "PK")}
PARENTS = {("ar", region): "015" for region in ("DZ", "EH", "LY", "MA", "TN", "XB")}
PARENTS.update({("en", region): "001" for region in ("BE", "CA", "PH")})
NO_PARENT = {("en", "MV"), ("es", "BZ"), ("pt", "FR")}


def read(name):
    with open(f"{FOLDER}/{name}", encoding="utf-8") as source:
        return source.read()


def tables():
    scripts, representatives, parents = {}, set(REPRESENTATIVES), {}
    for source, target in re.findall(r'<likelySubtag from="([^"]+)" to="([^"]+)"', read("likelySubtags.xml")):
        language, *rest = source.split("_")
        _, script, region = target.split("_")
        if language == "und" or len(language) > 3 or language in LATER:
            continue
        has_region = any(len(part) < 4 for part in rest)
        if not has_region and region not in ("ZZ", "001") and (language, region) not in NOT_REPRESENTATIVE:
            representatives.add((language, region, script))
        if not any(len(part) == 4 for part in rest):
            scripts[language, rest[0] if rest else ""] = script
    scripts.update(SCRIPTS)
    for parent, children in re.findall(r'<parentLocale parent="([^"]+)" locales="([^"]+)"', read("supplementalData.xml")):
        for child in children.split():
            language, region = child.split("_")[0], child.split("_")[-1]
            if "_" in parent and language == parent.split("_")[0] and len(region) < 4:
                parents[language, region] = parent.split("_")[-1]
    for key in NO_PARENT:
        del parents[key]
    parents.update(PARENTS)
    # A region that says what its language says anyway needs no line.
    scripts = {key: value for key, value in scripts.items() if not key[1] or scripts.get((key[0], "")) != value}
    return (sorted(f"{language:3}{region:3}{script}" for (language, region), script in scripts.items()),
            sorted(f"{language:3}{region:3}{script}" for language, region, script in representatives),
            sorted(f"{language:3}{region:3}{parent:3}" for (language, region), parent in parents.items()))


def write(name, comment, rows):
    print(f"\n// {comment}\nconstexpr std::string_view {name} =")
    lines = ["".join(rows[at:at + 10]) for at in range(0, len(rows), 10)]
    print("\n".join(f'    "{line}"' for line in lines) + ";")


print("// Written by make_locale_tables.py from the Unicode Common Locale Data Repository.")
print("// Copyright 1991-2022 Unicode, Inc. Unicode-DFS-2016, see https://www.unicode.org/copyright.html")
likely, representative, parent = tables()
write("kLikelyScripts", "Language (3), region (3) or blanks, script (4).", likely)
write("kRepresentatives", "The region that stands for a language in a script: language (3), region (3), script (4).",
      representative)
write("kParentRegions", "Language (3), region (3), region of the parent locale (3).", parent)
