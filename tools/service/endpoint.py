"""A text model behind an address of the common chat-completions kind."""
import concurrent.futures
import http.client
import json
import time
import urllib.parse
import urllib.request

from answers import Fault, group_in

AT_ONCE = 8
# The program waits three minutes for its reply: what is not answered by then is left out.
ALL_SECONDS = 150
ONE_SECONDS = 60
ANSWER_LIMIT_BYTES = 1 << 20


class NoRedirect(urllib.request.HTTPRedirectHandler):
    """A redirected request would take the key to wherever the answer points."""

    def redirect_request(self, *_):
        return None


class Endpoint:
    """`model` replaces the one that the program names, unless empty. The key leaves this object in the request's
    header alone."""

    def __init__(self, url, model="", key="", all_seconds=ALL_SECONDS):
        parts = urllib.parse.urlsplit(url)
        here = parts.hostname in ("127.0.0.1", "::1", "localhost")
        if parts.scheme != "https" and not (parts.scheme == "http" and here):
            raise Fault("the endpoint needs https, except on this machine")
        self.url = url
        self.model = model
        self.all_seconds = all_seconds
        self._key = key
        handlers = [NoRedirect()] + ([urllib.request.ProxyHandler({})] if here else [])
        self._opener = urllib.request.build_opener(*handlers)

    def groups(self, model, prompts):
        """The groups of those prompts that were answered in time, by id, and how many were not."""
        end = time.monotonic() + self.all_seconds
        pool = concurrent.futures.ThreadPoolExecutor(AT_ONCE)
        asked = {identifier: pool.submit(self._group, model, prompt, end) for identifier, prompt in prompts.items()}
        concurrent.futures.wait(asked.values(), timeout=self.all_seconds)
        pool.shutdown(wait=False, cancel_futures=True)
        answered = {identifier: future.result() for identifier, future in asked.items()
                    if future.done() and not future.cancelled()}
        groups = {identifier: group for identifier, group in answered.items() if group}
        return groups, len(prompts) - len(groups)

    def _group(self, model, prompt, end):
        left = end - time.monotonic()
        if left <= 0:
            return None
        body = {"model": self.model or model, "temperature": 0, "messages": [{"role": "user", "content": prompt}]}
        headers = {"Content-Type": "application/json"}
        if self._key:
            headers["Authorization"] = f"Bearer {self._key}"
        request = urllib.request.Request(self.url, json.dumps(body).encode("utf-8"), headers)
        try:
            with self._opener.open(request, timeout=min(left, ONE_SECONDS)) as reply:
                answer = json.loads(reply.read(ANSWER_LIMIT_BYTES))
            return group_in(answer["choices"][0]["message"]["content"])
        except (OSError, http.client.HTTPException, ValueError, LookupError, TypeError, RecursionError):
            return None  # an error's text may quote what was sent
