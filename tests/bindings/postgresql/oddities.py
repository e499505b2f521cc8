#!/usr/bin/env python3
"""Reads identifiers, and writes as many odd ones: each damaged or rewritten in one or two places. No line is empty or
has a tab; all are UTF-8. The same input gives the same output."""
import random
import sys

VALUES = ["-1", "4294967295", "4294967301", "2147483648", "-2147483649", "", "x", "7x", " 5", "05", "+3", "Größe",
          "a\\|b", "16||7|", "|", "||||", '"', "\\"]
LEVELS = ["NE=5", "NE", "=", "", "XY=1", "ne=5", "S=-1", "PP=||4294967295|", "PP=16||0|", "LP=|65600|7|n", "AP=1|2|9",
          "SUBIF=4", "MD=1|a", "MA=2|b", "MEP=3", "VEGROUP=4", "TUNNEL=1|2|3|4|5|6|7", "FR=1,S=0,CP=-1,SS=-1,SC=-1"]


def damaged(fdn, chance):
    """`fdn` with one thing changed."""
    levels = fdn.split(",")
    place = chance.randrange(len(levels))
    way = chance.randrange(7)
    if way == 0:
        levels[place] = levels[place].split("=")[0] + "=" + chance.choice(VALUES)
    elif way == 1:
        levels.insert(place, chance.choice(LEVELS))
    elif way == 2:
        levels.append(chance.choice(LEVELS))
    elif way == 3:
        levels[place] = chance.choice(LEVELS)
    elif way == 4:
        chance.shuffle(levels)
    elif way == 5:
        at = chance.randrange(len(fdn) + 1)
        return fdn[:at] + chance.choice(",=|1-\\ ü") + fdn[at:]
    else:
        subvalues = levels[place].split("|")
        subvalues[chance.randrange(len(subvalues))] = chance.choice(VALUES)
        levels[place] = "|".join(subvalues)
    return ",".join(levels)


def main():
    chance = random.Random(1)
    for line in sys.stdin:
        odd = damaged(line.rstrip("\n"), chance)
        if chance.randrange(2) == 0:
            odd = damaged(odd, chance) if odd else odd
        print(odd or ",")


main()
