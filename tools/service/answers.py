"""What the service answers: from a table, and for groups that the table does not know, from a text model.

The program reads replies by search and not as JSON: a value ends at the first comma or closing brace, even inside a
string, and nothing is unescaped but a quote. What could be misread is therefore never written."""
import json
import re

MISREAD = re.compile(r'[,{}"\\\x00-\x1f]')
PROMPT_LIMIT = 4096
PROMPT_LIMIT_CHARACTERS = 16_384

VERSION_KEYS = ("latest_version", "update_deadline", "update_required", "download_url")
SETUP_KEYS = ("setup_url", "file_name")


class Fault(Exception):
    """The text says what is wrong; it holds nothing of a request and nothing secret."""


def minified(value):
    return json.dumps(value, ensure_ascii=False, separators=(",", ":"))


def plain_texts(section, name, keys):
    """The texts of one section of the table, in the order of `keys`; a truth value becomes a text."""
    if section is None:
        return None
    if not isinstance(section, dict) or set(section) != set(keys):
        raise Fault(f"{name}: needs exactly {', '.join(keys)}")
    texts = {key: str(section[key]).lower() if isinstance(section[key], bool) else section[key] for key in keys}
    for key, text in texts.items():
        if not isinstance(text, str) or MISREAD.search(text):
            raise Fault(f"{name}.{key}: needs a text without commas, braces, quotes and backslashes")
    return texts


class Table:
    """Fixed answers: "version" and "setup" as the program gets them, "groups" from an id to the name of its group.
    Each may be missing."""

    def __init__(self, content):
        if not isinstance(content, dict) or set(content) - {"version", "setup", "groups"}:
            raise Fault("the table has version, setup and groups, and nothing else")
        self.version = plain_texts(content.get("version"), "version", VERSION_KEYS)
        self.setup = plain_texts(content.get("setup"), "setup", SETUP_KEYS)
        self.groups = content.get("groups", {})
        if not isinstance(self.groups, dict):
            raise Fault("groups: needs ids with the names of their groups")
        for identifier, group in self.groups.items():
            if not isinstance(group, str) or MISREAD.search(group):
                raise Fault(f"groups.{identifier}: needs a name without commas, braces, quotes and backslashes")

    @classmethod
    def from_file(cls, path):
        try:
            with open(path, encoding="utf-8") as file:
                return cls(json.load(file))
        except (OSError, ValueError) as error:
            raise Fault(f"{path}: {error}") from None


def section_reply(section):
    """An empty reply when the table says nothing: the program then goes on as it is."""
    return "" if section is None else minified(section)


def questions(body):
    """The model that the program asks for, and its prompts by id. Of two prompts with one id the first counts, as one
    answer serves both."""
    try:
        request = json.loads(body)
        prompts = [(prompt["id"], prompt["prompt"]) for prompt in request["prompts"]]
        model = request["model"]
    except (ValueError, KeyError, TypeError, RecursionError):
        raise Fault("the request is not of the form that the program sends") from None
    if len(prompts) > PROMPT_LIMIT or not isinstance(model, str):
        raise Fault("too many prompts, or no model")
    for identifier, prompt in prompts:
        if not isinstance(identifier, str) or not isinstance(prompt, str) or len(prompt) > PROMPT_LIMIT_CHARACTERS:
            raise Fault("a prompt is not a text, or too long")
    first = {}
    for identifier, prompt in prompts:
        first.setdefault(identifier, prompt)
    return model, first


def group_in(answer):
    """The group that a model's answer names; None unless it is an object with one, and one that cannot be misread."""
    try:
        group = json.loads(answer)["group"]
    except (ValueError, KeyError, TypeError, RecursionError):
        return None
    return group if isinstance(group, str) and group and not MISREAD.search(group) else None


def groups_reply(groups):
    """One member for each id, named by it, with the model's object in "content". An id without a group is left out:
    the program then leaves its item as it is, where any other text would make it read the next item's answer."""
    return minified({identifier: {"content": minified({"group": group})} for identifier, group in groups.items()})
