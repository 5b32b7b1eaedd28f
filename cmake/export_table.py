#!/usr/bin/env python3
"""The export table of zek2.dll, derived from the public headers.

Every exported routine and data word is declared once in include/zek2/*.h with ZEK_SYMBOL("q....."). On
32-bit Windows a routine is exported decorated with the bytes of its argument list ("_q39576@36"), a data
word bare ("q56947").  Nothing here knows a byte count: the compiler works them out from the prototypes.

  probe   headers -> a C++ translation unit that refers, for every declaration, to an undefined object
          or function of the declaration's own type, so the compiler decorates each function reference
          with its argument bytes; and the list of declarations (routine name and symbol).
  def     the probe's object file (read with nm) -> the module definition that links zek2.dll, and the
          table of decorated names that the Windows tour binds.
  check   zek2.dll (read with objdump -p) -> compares its export table with the declarations, nothing
          missing, nothing extra, every routine decorated and every data word bare; checks that the DLL
          imports nothing beyond the system libraries and torvic.dll, and that it imports the platform
          routines it relies on; with --out, writes a translation unit of static_asserts in which each
          decoration's byte count is computed again from the declaration's type by templates.
"""
import argparse
import pathlib
import re
import subprocess
import sys

SYMBOL = re.compile(r'ZEK_SYMBOL\(\s*"([A-Za-z0-9_]+)"\s*\)')
IDENT = r'[A-Za-z_][A-Za-z0-9_]*'


def strip_comments(text):
    text = re.sub(r'/\*.*?\*/', lambda m: ' ' * len(m.group(0)), text, flags=re.S)
    return re.sub(r'//[^\n]*', '', text)


def declaration_name(statement):
    """The declared name in the text of one declaration, up to its ZEK_SYMBOL."""
    statement = re.sub(r'__attribute__\s*\(\(.*?\)\)', ' ', statement)
    paren = re.search(r'(' + IDENT + r')\s*\(', statement)
    if paren:
        return paren.group(1)
    names = re.findall(r'(' + IDENT + r')\s*(?:\[[^\]]*\])?\s*$', statement)
    if not names:
        raise ValueError('no declared name in: ' + statement.strip())
    return names[-1]


def scan_headers(folder):
    """(header, routine name, symbol) for every ZEK_SYMBOL in the public headers, in header order."""
    found = []
    for header in sorted(pathlib.Path(folder).glob('*.h')):
        text = strip_comments(header.read_text())
        text = '\n'.join('' if line.lstrip().startswith('#') else line for line in text.split('\n'))
        start = 0
        for match in SYMBOL.finditer(text):
            head = text[start:match.start()]
            cut = max(head.rfind(';'), head.rfind('{'), head.rfind('}'))
            found.append((header.name, declaration_name(head[cut + 1:]), match.group(1)))
            start = match.end()
    symbols = [s for _, _, s in found]
    repeated = sorted({s for s in symbols if symbols.count(s) > 1})
    if repeated:
        raise ValueError('symbols declared twice: ' + ' '.join(repeated))
    return found


def read_declarations(path):
    return [tuple(line.split()) for line in pathlib.Path(path).read_text().split('\n') if line.strip()]


def command_probe(args):
    declarations = scan_headers(args.headers)
    headers = sorted({h for h, _, _ in declarations})
    lines = ['// Generated from the public headers: one reference per export, of the declaration\'s own type.',
             '#include "zek2/types.h"']
    lines += ['#include "zek2/%s"' % h for h in headers]
    lines.append('')
    lines += ['extern "C" decltype(%s) zek_probe_%s;' % (name, symbol) for _, name, symbol in declarations]
    lines.append('extern "C" const void *const zek_export_probes[] = {')
    lines += ['    reinterpret_cast<const void *>(&zek_probe_%s),' % symbol for _, _, symbol in declarations]
    lines.append('};')
    pathlib.Path(args.out).write_text('\n'.join(lines) + '\n')
    pathlib.Path(args.declarations).write_text(
        ''.join('%s %s\n' % (name, symbol) for _, name, symbol in declarations))


def command_def(args):
    out = subprocess.run([args.nm, '--undefined-only', args.object], check=True, capture_output=True,
                         text=True).stdout
    exports = {}
    for match in re.finditer(r'\bU _zek_probe_([A-Za-z0-9_]+?)(@\d+)?$', out, flags=re.M):
        symbol, bytes_ = match.group(1), match.group(2)
        exports[symbol] = '_%s%s' % (symbol, bytes_) if bytes_ else symbol
    declared = [symbol for _, symbol in read_declarations(args.declarations)]
    missing = [s for s in declared if s not in exports]
    if missing:
        sys.exit('export_table: no probe reference for ' + ' '.join(missing))
    lines = ['; Generated from the public headers: routines decorated with their argument bytes,',
             '; data words bare.', 'LIBRARY zek2.dll', 'EXPORTS']
    for symbol in sorted(declared):
        name = exports[symbol]
        lines.append('    %s = %s%s' % (name, symbol, '' if name.startswith('_') else ' DATA'))
    pathlib.Path(args.out).write_text('\n'.join(lines) + '\n')
    table = ['/* Generated: the export names of zek2.dll, decorated as the host binds them. */',
             'static const char *const tour_export_names[] = {']
    table += ['    "%s",' % exports[s] for s in sorted(declared)]
    table.append('};')
    pathlib.Path(args.names).write_text('\n'.join(table) + '\n')


def dll_tables(objdump, dll):
    """(export names, {imported DLL: [imported names]}) of a PE file."""
    text = subprocess.run([objdump, '-p', dll], check=True, capture_output=True, text=True).stdout
    names = []
    section = text.split('[Ordinal/Name Pointer] Table', 1)
    if len(section) == 2:
        for line in section[1].split('\n')[1:]:
            match = re.match(r'\s*\[\s*\d+\]\s+(\S+)\s*$', line)
            if not match:
                break
            names.append(match.group(1))
    imports = {}
    current = None
    for line in text.split('\n'):
        match = re.match(r'\s*DLL Name: (\S+)', line)
        if match:
            current = match.group(1)
            imports[current] = []
            continue
        match = re.match(r'\s*[0-9a-f]+\s+<none>\s+[0-9a-f]+\s+(\S+)', line) or \
            re.match(r'\s*[0-9a-f]+\s+[0-9a-f]+\s+(\S+)\s*$', line)
        if current and match:
            imports[current].append(match.group(1))
        elif current and not line.strip():
            current = None if imports[current] else current
    return names, imports


SYSTEM_LIBRARIES = re.compile(r'^(kernel32|user32|msvcrt|advapi32|ucrtbase|api-ms-win-[a-z0-9-]+)\.dll$', re.I)
PLATFORM_IMPORTS = {
    'torvic.dll': ['OldTorviPrintf'],
    'user32.dll': ['MessageBoxA', 'wsprintfA'],
    'kernel32.dll': ['DisableThreadLibraryCalls'],
    'msvcrt.dll': ['_controlfp'],
}


def command_check(args):
    declarations = read_declarations(args.declarations)
    names, imports = dll_tables(args.objdump, args.dll)
    problems = []
    by_symbol = {}
    for export in names:
        match = re.match(r'^_([A-Za-z0-9_]+)@(\d+)$', export)
        symbol, bytes_ = (match.group(1), int(match.group(2))) if match else (export, None)
        if symbol in by_symbol:
            problems.append('exported twice: %s and %s' % (by_symbol[symbol][0], export))
        by_symbol[symbol] = (export, bytes_)
    declared = {symbol for _, symbol in declarations}
    for _, symbol in declarations:
        if symbol not in by_symbol:
            problems.append('declared but not exported: ' + symbol)
    for symbol, (export, _) in sorted(by_symbol.items()):
        if symbol not in declared:
            problems.append('exported but not declared: ' + export)
        elif not re.match(r'^(q\d{5}|f0\d[a-z]{2}f_ENTRY|[A-Z]\d\d[A-Z0-9_]+|[a-z]\d\d[a-z]{3})$', symbol):
            problems.append('not an export symbol of the library: ' + export)
    lowered = {dll.lower(): entries for dll, entries in imports.items()}
    for dll in imports:
        if dll.lower() != 'torvic.dll' and not SYSTEM_LIBRARIES.match(dll):
            problems.append('depends on a library beyond the system and the host: ' + dll)
    for dll, wanted in PLATFORM_IMPORTS.items():
        for entry in wanted:
            if entry not in lowered.get(dll, []):
                problems.append('does not import %s from %s' % (entry, dll))
    if problems:
        sys.exit('export_table: zek2.dll differs from the headers\n  ' + '\n  '.join(problems))
    if args.out:
        lines = ['// Generated from the export table of zek2.dll: each decoration\'s byte count against the',
                 '// argument bytes of the routine\'s prototype; each bare name is a data word.',
                 '#include "export_bytes.h"', '#include "zek2/types.h"']
        lines += ['#include "zek2/%s"' % h.name for h in sorted(pathlib.Path(args.headers).glob('*.h'))]
        for name, symbol in declarations:
            export, bytes_ = by_symbol[symbol]
            if bytes_ is None:
                lines.append('static_assert(zek_exports::is_data_word<decltype(%s)>, "%s is exported bare");'
                             % (name, export))
            else:
                lines.append('static_assert(zek_exports::argument_bytes<decltype(%s)>::value == %d, '
                             '"%s: %s");' % (name, bytes_, export, name))
        pathlib.Path(args.out).write_text('\n'.join(lines) + '\n')
    print('export table of %s matches the headers: %d names, %d routines decorated, imports %s'
          % (args.dll, len(names), sum(1 for e, b in by_symbol.values() if b is not None),
             ', '.join(sorted(imports))))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    sub = parser.add_subparsers(dest='command', required=True)
    probe = sub.add_parser('probe')
    probe.add_argument('--headers', required=True)
    probe.add_argument('--out', required=True)
    probe.add_argument('--declarations', required=True)
    define = sub.add_parser('def')
    define.add_argument('--nm', required=True)
    define.add_argument('--object', required=True)
    define.add_argument('--declarations', required=True)
    define.add_argument('--out', required=True)
    define.add_argument('--names', required=True)
    check = sub.add_parser('check')
    check.add_argument('--objdump', required=True)
    check.add_argument('--dll', required=True)
    check.add_argument('--declarations', required=True)
    check.add_argument('--headers')
    check.add_argument('--out')
    args = parser.parse_args()
    {'probe': command_probe, 'def': command_def, 'check': command_check}[args.command](args)


if __name__ == '__main__':
    main()
