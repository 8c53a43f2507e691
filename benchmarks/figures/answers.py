"""What the service adds to an answer: the same question put to a provider directly and through the service."""

import http.client
import json
import time

from driver.provider import MODEL, Provider
from driver.service import Service

from .figure import Figure, median

ROUNDS = 100


def figures(program):
    provider = Provider("A short answer in a few words.")
    service = Service(program, "--embedded", *provider.arguments)
    try:
        service.start()
        alone = median(rounds(provider.port, "/v1/chat/completions", direct_body(), {}))
        token = {"Authorization": f"Bearer {service.token}"}
        question = json.dumps({"question": "why?"})
        whole = median(rounds(service.port, "/v1/answers", question, token))
        first = median(rounds(service.port, "/v1/answers", question, token | {"Accept": "text/event-stream"}))
    finally:
        service.close()
        provider.close()
    name = "answer through the service, over the provider alone"
    yield Figure(name, max(whole - alone, 0), "ms", 10, note=f"provider alone {alone:.1f} ms")
    yield Figure(f"{name}, to the first piece", max(first - alone, 0), "ms", 10)


def direct_body():
    return json.dumps({"model": MODEL, "messages": [{"role": "user", "content": "why?"}]})


def rounds(port, path, body, headers):
    """Milliseconds to the first byte of each answer, over one connection."""
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=20)
    for _ in range(ROUNDS):
        begun = time.perf_counter()
        connection.request("POST", path, body, {"Content-Type": "application/json"} | headers)
        response = connection.getresponse()
        first = response.read(1)
        taken = (time.perf_counter() - begun) * 1000
        response.read()
        if response.status != 200 or not first:
            raise RuntimeError(f"{path}: {response.status}")
        yield taken
    connection.close()
