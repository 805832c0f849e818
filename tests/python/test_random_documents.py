"""Whatever the documents say, the package and the tool agree on the options and their reasons."""

import json
import subprocess
from xml.sax.saxutils import escape, quoteattr

from hypothesis import HealthCheck, event, given, settings
from hypothesis import strategies as st

import info_analyze
from conftest import CUPS_ROOT, DRIVER, SAMPLES, TOOL, documents_of
from info_analyze import Analyzer, DocumentsError
from test_samples import reason_json

DOCUMENTS = info_analyze.document_names()
KEYS = sorted({source.key for table in info_analyze.model_tables() for row in table.rows
               for source in row.inputs if source.document}
              | {"hd", "memory", "duplex", "version", "devicename", "modes", "type", "binnum"})
# Characters that XML 1.0 can hold.
TEXTS = st.text(st.characters(blacklist_categories=("Cs", "Cc", "Cn")), max_size=4)
KNOWN_TEXTS = st.sampled_from([
    "staple", "punch", "punching_2_holes", "Vorel Booklet Finisher-W1", "Cas1", "Letter", "dial"])
NUMBERS = st.integers(-3, 200) | st.sampled_from([2**31 - 1, -2**31, 2**31, 10**12])


def element(name, text, key=None):
    return f"<{name}{f' key={quoteattr(key)}' if key else ''}>{text}</{name}>"


def scalars(key):
    return st.one_of(
        NUMBERS.map(lambda number: element("long", number, key)),
        (KNOWN_TEXTS | TEXTS).map(lambda text: element("string", escape(text), key)),
        st.sampled_from([element("double", "-1.5", key), element("binary", "AAEC", key)]))


def arrays(key):
    return st.lists(scalars(None), max_size=3).map(
        lambda elements: element("array", "".join(elements), key))


values = st.sampled_from(KEYS).flatmap(lambda key: scalars(key) | arrays(key))
dictionaries = st.lists(values, max_size=4).map(
    lambda found: element("dict", "".join(found), "list"))
documents = st.builds(
    lambda outer, items: f'<document version="1">{"".join(outer + items)}</document>'.encode(),
    st.lists(values, max_size=4), st.lists(dictionaries, max_size=3)) | st.binary(max_size=40)


def replace_documents(folder, sample, replaced, missing):
    """The documents of a sample printer, but for some."""
    for name in DOCUMENTS:
        (folder / name).unlink(missing_ok=True)
        if name not in missing:
            (folder / name).write_bytes(
                replaced.get(name) or (documents_of(sample) / name).read_bytes())


def ask_tool(verb, sample, folder):
    return subprocess.run(
        [*TOOL, verb, "--queue", sample, "--cups-root", CUPS_ROOT, "--driver-folder", DRIVER,
         "--device-info", folder, "--format", "json"], capture_output=True, check=False)


def query(sample, folder):
    """The options and reasons as the tool writes them; None when there are none."""
    with Analyzer(DRIVER, sample, folder) as analyzer:
        try:
            options = analyzer.query()
        except DocumentsError:
            return None
    return [reason_json(options.reason(keyword)) for keyword in options]


cases = dict(
    sample=st.sampled_from(SAMPLES),
    replaced=st.dictionaries(st.sampled_from(DOCUMENTS), documents, max_size=4),
    missing=st.sets(st.sampled_from(DOCUMENTS), max_size=1))
limits = settings(suppress_health_check=list(HealthCheck))


@settings(limits, max_examples=60)
@given(**cases)
def test_options_are_those_of_the_tool(tmp_path_factory, sample, replaced, missing):
    folder = tmp_path_factory.getbasetemp()
    replace_documents(folder, sample, replaced, missing)
    found = query(sample, folder)
    event(f"has options: {found is not None}")
    run = ask_tool("query", sample, folder)
    assert (found is None) == (run.returncode != 0)
    if found is not None:
        # The tool replaces bytes that are not UTF-8; these documents have none.
        assert [{"keyword": option["keyword"], "value": option["value"]} for option in found] == \
            json.loads(run.stdout)["options"]


@settings(limits, max_examples=12)
@given(**cases)
def test_reasons_are_those_of_the_tool(tmp_path_factory, sample, replaced, missing):
    folder = tmp_path_factory.getbasetemp()
    replace_documents(folder, sample, replaced, missing)
    found = query(sample, folder)
    if found is not None:
        explained = json.loads(ask_tool("explain", sample, folder).stdout)["explanations"]
        assert found == [{key: explanation[key] for key in reason}
                         for reason, explanation in zip(found, explained, strict=True)]
