#!/usr/bin/env python3
"""Checks the bill of materials against CycloneDX's own JSON schema: bill_schema_test.py SCHEMAS BILL

SCHEMAS is the folder into which scripts/lib/sbom_schema.sh puts the schemas. No Debian package has them, so without that
folder this ends with 77, which CTest takes for skipped.
"""
import json
import sys
from pathlib import Path

SKIPPED = 77


def main(schemas, bill):
    schemas, content = Path(schemas), json.loads(Path(bill).read_text(encoding="utf-8"))
    if not schemas.is_dir():
        print(f"skipped: {schemas} is not there, see scripts/lib/sbom_schema.sh")
        return SKIPPED
    import fastjsonschema

    def schema(address):
        """The schemas refer to each other as neighbours on the web; here they are neighbours in a folder."""
        return json.loads((schemas / address.rpartition("/")[2]).read_text(encoding="utf-8"))

    validate = fastjsonschema.compile(schema(f"bom-{content['specVersion']}.SNAPSHOT.schema.json"),
                                      handlers={"http": schema, "https": schema})
    try:
        validate(content)
    except fastjsonschema.JsonSchemaValueException as fault:
        print(str(fault)[:500])
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
