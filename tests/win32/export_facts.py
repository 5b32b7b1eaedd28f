#!/usr/bin/env python3
"""Facts about zek2.dll's export table that hold independently of how it was made.

- Every master named in the host's table is exported with the argument bytes the table gives.
- Every second name a source defines with ZEK_ALIAS is exported at its target's address, so the body
  is callable under each of its names.
- The three data words are exported bare.
Usage: export_facts.py OBJDUMP DLL DECLARATIONS SOURCE_DIR
"""
import pathlib
import re
import subprocess
import sys

# The host's table of masters: name and argument bytes.
MASTERS = {
    'f06aaf': 20, 'f06ejf': 16, 'f06jjf': 16, 'f06paf': 60, 'f06pff': 48, 'f06pjf': 48, 'f06pmf': 44,
    'f06saf': 76, 'f06sff': 48, 'f06sjf': 48, 'f06smf': 52, 'f06snf': 52, 'f06yaf': 72, 'f06yjf': 68,
    'f06zaf': 88, 'f06zjf': 76, 'f06zpf': 60, 'f07adf': 28, 'f07arf': 28, 'f07frf': 28, 'f08jjf': 96,
    'f08pef': 68, 'f08psf': 64, 'f08qff': 48, 'f08qkf': 68, 'f08qlf': 84, 'f08qtf': 44, 'f08qyf': 84,
}
DATA_WORDS = ['q56947', 'q52016', 'q86923']


def export_addresses(objdump, dll):
    text = subprocess.run([objdump, '-p', dll], check=True, capture_output=True, text=True).stdout
    rva = dict(re.findall(r'^\s*\[\s*(\d+)\] \+base\[\s*\d+\]\s+([0-9a-f]+) Export RVA', text, re.M))
    names = text.split('[Ordinal/Name Pointer] Table', 1)[1]
    return {name: rva[index] for index, name in re.findall(r'^\s*\[\s*(\d+)\] (\S+)\s*$', names, re.M)}


def main(objdump, dll, declarations, sources):
    exports = export_addresses(objdump, dll)
    by_symbol = {re.sub(r'^_|@\d+$', '', name): name for name in exports}
    symbol_of = dict(line.split() for line in pathlib.Path(declarations).read_text().split('\n') if line.strip())
    problems = []
    masters = 0
    for master, bytes_ in MASTERS.items():
        name = by_symbol.get(master + '_ENTRY')
        if name is None:
            continue
        masters += 1
        if name != '_%s_ENTRY@%d' % (master, bytes_):
            problems.append('%s exported as %s, the host binds _%s_ENTRY@%d' % (master, name, master, bytes_))
    aliases = 0
    for source in sorted(pathlib.Path(sources).rglob('*.cpp')):
        text = source.read_text()
        for alias, target in re.findall(r'(\w+)\s*\([^;{}]*\)\s*ZEK_ALIAS\("(\w+)"\)', text):
            aliases += 1
            name, target_name = by_symbol.get(symbol_of.get(alias, alias)), by_symbol.get(target)
            if name is None or target_name is None:
                problems.append('%s (alias of %s) or its target is not exported' % (alias, target))
            elif exports[name] != exports[target_name]:
                problems.append('%s is not at the address of %s' % (name, target_name))
    for word in DATA_WORDS:
        if word not in exports:
            problems.append('data word %s is not exported bare' % word)
    if problems:
        sys.exit('\n'.join(problems))
    print('%d masters with the host\'s byte counts, %d aliases at their targets\' addresses, %d data words bare'
          % (masters, aliases, len(DATA_WORDS)))


if __name__ == '__main__':
    main(*sys.argv[1:])
