#!/usr/bin/env python3
"""Generates the build's resource files from the readable UTF-8 sources.

  strings SRC --ids H --table CPP [--rc RC]
      SRC lines: ID <TAB> SYMBOL <TAB> text, '#' comments, C escapes in text
      (\\n \\r \\t \\\\ \\"). Writes the symbolic ID header, the string table
      for builds without window-system resources (UTF-8), and optionally a
      STRINGTABLE in code page 1252 for windres.
  recode SRC DST
      Copies a UTF-8 resource script to code page 1252 (windres -c 1252).
"""
import re
import sys


def unescape(text):
    out, i = [], 0
    table = {'n': '\n', 'r': '\r', 't': '\t', '\\': '\\', '"': '"'}
    while i < len(text):
        c = text[i]
        if c == '\\' and i + 1 < len(text) and text[i + 1] in table:
            out.append(table[text[i + 1]])
            i += 2
        else:
            out.append(c)
            i += 1
    return ''.join(out)


def read_strings(path):
    entries, seen_ids, seen_syms = [], set(), set()
    with open(path, encoding='utf-8') as f:
        for number, line in enumerate(f, 1):
            line = line.rstrip('\n')
            if not line.strip() or line.lstrip().startswith('#'):
                continue
            parts = line.split('\t', 2)
            if len(parts) != 3 or not parts[0].isdigit() or not re.fullmatch(r'[A-Z][A-Z0-9_]*', parts[1]):
                sys.exit(f'{path}:{number}: expected ID<TAB>SYMBOL<TAB>text')
            sid, sym, text = int(parts[0]), parts[1], unescape(parts[2])
            if sid in seen_ids or sym in seen_syms:
                sys.exit(f'{path}:{number}: duplicate {sid} / {sym}')
            try:
                text.encode('cp1252')
            except UnicodeEncodeError:
                sys.exit(f'{path}:{number}: text not representable in code page 1252')
            seen_ids.add(sid)
            seen_syms.add(sym)
            entries.append((sid, sym, text))
    entries.sort()
    return entries


def c_literal(data):
    """A C string literal for bytes, safe for any compiler's source charset."""
    out = []
    for b in data:
        ch = chr(b)
        if ch == '\\':
            out.append('\\\\')
        elif ch == '"':
            out.append('\\"')
        elif 32 <= b < 127 and ch != '?':
            out.append(ch)
        else:
            out.append('\\%03o' % b)
    return '"' + ''.join(out) + '"'


def rc_literal(text):
    out = []
    for ch in text:
        if ch == '"':
            out.append('""')
        elif ch == '\\':
            out.append('\\\\')
        elif ch == '\n':
            out.append('\\n')
        elif ch == '\r':
            out.append('\\r')
        elif ch == '\t':
            out.append('\\t')
        else:
            out.append(ch)
    return '"' + ''.join(out) + '"'


def write_if_changed(path, data, encoding='utf-8'):
    raw = data.encode(encoding)
    try:
        with open(path, 'rb') as f:
            if f.read() == raw:
                return
    except OSError:
        pass
    with open(path, 'wb') as f:
        f.write(raw)


def cmd_strings(args):
    src = args[0]
    opts = dict(zip(args[1::2], args[2::2]))
    entries = read_strings(src)
    ids = ['// Generated from resources/strings.de.txt; edit that file.', '#pragma once', '',
           'namespace kodbc::msg {']
    ids += [f'inline constexpr int {sym} = {sid};' for sid, sym, _ in entries]
    ids += ['} // namespace kodbc::msg', '']
    write_if_changed(opts['--ids'], '\n'.join(ids))

    table = ['// Generated from resources/strings.de.txt; edit that file.',
             '#include <korvel/korvel32.h>', '', 'namespace kodbc::resources {', '',
             'extern const KorvelStringResource kStrings[] = {']
    table += [f'    {{{sid}, {c_literal(text.encode("utf-8"))}}},' for sid, _, text in entries]
    table += ['};', f'extern const int kStringCount = {len(entries)};', '', '} // namespace kodbc::resources', '']
    write_if_changed(opts['--table'], '\n'.join(table))

    if '--rc' in opts:
        rc = ['// Generated from resources/strings.de.txt; edit that file.', 'STRINGTABLE', 'BEGIN']
        rc += [f'    {sid}, {rc_literal(text)}' for sid, _, text in entries]
        rc += ['END', '']
        write_if_changed(opts['--rc'], '\n'.join(rc), 'cp1252')


def cmd_recode(args):
    src, dst = args
    with open(src, encoding='utf-8') as f:
        text = f.read()
    write_if_changed(dst, text, 'cp1252')


def main():
    if len(sys.argv) < 2 or sys.argv[1] not in ('strings', 'recode'):
        sys.exit(__doc__)
    {'strings': cmd_strings, 'recode': cmd_recode}[sys.argv[1]](sys.argv[2:])


if __name__ == '__main__':
    main()
