# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
"""snippets.py FOLDER FILE...: writes each fenced block of C of the files into the folder as a program
NAME-LINE.c, and the block of output behind it, if there is one, as NAME-LINE.txt. A block without
a main is the body of one."""
import os
import re
import sys

HEAD = '#include <qek_std.h>\n#include <assert.h>\n#include <stdio.h>\n#include <string.h>\n'
folder = sys.argv[1]
for path in sys.argv[2:]:
    text = open(path).read()
    name = os.path.splitext(os.path.basename(path))[0]
    blocks = list(re.finditer(r'^```(\w+)\n(.*?)^```$', text, re.M | re.S))
    for at, block in enumerate(blocks):
        if block[1] != 'c':
            continue
        line = text.count('\n', 0, block.start()) + 2
        code = block[2]
        if 'int main(' not in code:
            functions = list(re.finditer(r'^static [^;]*?^\{$.*?^\}$\n', code, re.M | re.S))
            split = functions[-1].end() if functions else 0 # functions stand in front
            functions, body = code[:split], code[split:]
            code = '%s%s\nint main(void)\n{\n%s    return 0;\n}\n' % (HEAD, functions, body)
        target = '%s/%s-%d' % (folder, name, line)
        open(target + '.c', 'w').write(code)
        if at + 1 < len(blocks) and blocks[at + 1][1] == 'output':
            open(target + '.txt', 'w').write(blocks[at + 1][2])
