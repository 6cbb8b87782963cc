"""What tests/mutation is made of.

source      the places of a file that can be broken, and how
choice      which of them are tried
record      what came of them, those that nobody could see, and the score
build_tree  what is made of a file, with which commands, and which tests run it
laboratory  a copy of everything in which things may break
bench       from one source file to the programs that it is in
programs    test programs, and whether they pass unbroken
trial       one mutant after another
"""
