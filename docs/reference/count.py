# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 The qek_std authors
"""count.py XML EXPORTS: counts what is documented in Doxygen's XML; fails if something is not."""
import glob
import re
import sys
import xml.etree.ElementTree as xml

folder, exports = sys.argv[1:]
missing, counts, names = [], dict.fromkeys(('function', 'parameter', 'field', 'type'), 0), set()


def text(node):
    return node is not None and ''.join(node.itertext()).strip()


def count(kind, name, documented):
    counts[kind] += 1
    if not documented:
        missing.append('%s %s' % (kind, name))


# Everything stands in a group; a record has a file of its own.
for path in glob.glob(folder + '/group__*.xml') + glob.glob(folder + '/struct*.xml'):
    for member in xml.parse(path).iter('memberdef'):
        name, kind = member.findtext('name'), member.get('kind')
        said = text(member.find('briefdescription')) or text(member.find('detaileddescription'))
        if kind == 'function':
            family = re.match('qek_([a-z]+)_|', name).group(1) or 'heap'
            if name in names or not path.endswith('/group__%s.xml' % family):
                missing.append('place of %s, also in %s' % (name, path))
            names.add(name)
            count('function', name, said)
            told = {text(item.find('parameternamelist/parametername'))
                    for item in member.iter('parameteritem')
                    if text(item.find('parameterdescription'))}
            for parameter in member.findall('param'):
                given = parameter.findtext('declname') or text(parameter.find('type'))
                if given != 'void':
                    count('parameter', '%s of %s' % (given, name), given in told)
            if text(member.find('type')).split()[-1:] != ['void'] and not any(
                    section.get('kind') == 'return' for section in member.iter('simplesect')):
                missing.append('result of ' + name)
        elif kind == 'variable':
            count('field', name, said)
        elif kind == 'typedef':
            count('type', name, said)

exported = {line for line in open(exports).read().splitlines() if re.match('qek_', line)}
missing += ['function ' + name for name in sorted(exported ^ names)]
print('%d of %d functions, %d parameters, %d fields, %d types are documented'
      % (counts['function'], len(exported), counts['parameter'], counts['field'], counts['type']))
for line in missing[:20]:
    print('not documented: ' + line)
sys.exit(bool(missing))
