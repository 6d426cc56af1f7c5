"""Checks the bill of materials against CycloneDX's own JSON schema: bill_schema_test.py SCHEMAS BILL

SCHEMAS is the folder into which scripts/lib/sbom_schema.sh puts the schemas. No Debian package has them, so without that
folder this ends with 77, which CTest takes for skipped.
"""
import json
import sys
from pathlib import Path

schemas, bill = Path(sys.argv[1]), json.loads(Path(sys.argv[2]).read_text(encoding="utf-8"))
if not schemas.is_dir():
    print(f"skipped: {schemas} is not there, see scripts/lib/sbom_schema.sh")
    sys.exit(77)

import fastjsonschema  # noqa: E402


def schema(address):
    """The schemas refer to each other as neighbours on the web; here they are neighbours in a folder."""
    return json.loads((schemas / address.rpartition("/")[2]).read_text(encoding="utf-8"))


name = f"bom-{bill['specVersion']}.SNAPSHOT.schema.json"
try:
    fastjsonschema.compile(schema(name), handlers={"http": schema, "https": schema})(bill)
except fastjsonschema.JsonSchemaValueException as fault:
    sys.exit(str(fault)[:500])
