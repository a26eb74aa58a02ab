"""95 % confidence intervals for the evaluation's rates.

Wilson's score interval for a proportion (event recall), and the exact
(Garwood) interval for a Poisson count (false alarms), found by bisection on
the Poisson distribution function so that only the standard library is needed.
"""

import math

Z95 = 1.959963984540054  # two-sided 95 % point of the normal distribution
ALPHA = 0.05


def wilson(successes, trials, z=Z95):
    """(low, high) for successes out of trials; None when trials is 0."""
    if trials == 0:
        return None
    p = successes / trials
    z2 = z * z
    scale = 1.0 + z2 / trials
    centre = (p + z2 / (2 * trials)) / scale
    half = z / scale * math.sqrt(p * (1.0 - p) / trials + z2 / (4.0 * trials * trials))
    return (max(0.0, centre - half), min(1.0, centre + half))


def _poisson_cdf(k, mean):
    """P(X <= k) for X Poisson with the given mean, summed in log space."""
    if k < 0:
        return 0.0
    if mean == 0.0:
        return 1.0
    log_mean = math.log(mean)
    terms = [i * log_mean - mean - math.lgamma(i + 1) for i in range(k + 1)]
    top = max(terms)
    return min(1.0, math.exp(top) * sum(math.exp(t - top) for t in terms))


def _solve(function, target, low, high):
    """The mean at which a decreasing function of the mean equals target."""
    while function(high) > target:
        high *= 2.0
    for _ in range(200):
        middle = 0.5 * (low + high)
        if function(middle) > target:
            low = middle
        else:
            high = middle
        if high - low <= 1e-12 * high:
            break
    return 0.5 * (low + high)


def poisson_exact(count):
    """(low, high) for the mean of a Poisson count, exact (Garwood) 95 %."""
    tail = ALPHA / 2
    high = _solve(lambda m: _poisson_cdf(count, m), tail, 0.0, count + 10.0)
    if count == 0:
        return (0.0, high)
    # low: the mean at which P(X >= count) = tail, i.e. P(X <= count - 1) = 1 - tail
    low = _solve(lambda m: _poisson_cdf(count - 1, m), 1.0 - tail, 0.0, count + 10.0)
    return (low, high)
